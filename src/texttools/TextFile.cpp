#include "texttools/TextFile.h"

#include "core/Windows1252.h"

#include <QDir>
#include <QFile>

namespace kelvora::textFile {

QStringList list(const QString &folder)
{
    return QDir(folder).entryList({QStringLiteral("*.txt")}, QDir::Files | QDir::Readable,
                                  QDir::Name | QDir::IgnoreCase);
}

QString textOf(const QByteArray &bytes)
{
    return windows1252::decodeJoiningLines(bytes);
}

QString loaded(const QString &current, bool append, const QString &fileText)
{
    return append ? current + u' ' + fileText : fileText;
}

QString cutAtBlank(const QString &text, qsizetype limit)
{
    if (text.size() <= limit)
        return text;
    qsizetype end = limit;
    // A surrogate pair is one character: never keep half of it.
    if (end > 0 && text.at(end - 1).isHighSurrogate())
        --end;
    const qsizetype blank = text.lastIndexOf(u' ', end);
    return text.left(blank > 0 ? blank : end);
}

Read read(const QString &path)
{
    Read r;
    QFile file(path);
    if (!file.exists()) {
        r.error = QStringLiteral("Le fichier « %1 » n'existe pas.").arg(QDir::toNativeSeparators(path));
        return r;
    }
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        r.error = QStringLiteral("Le fichier « %1 » ne peut pas être lu : %2")
                      .arg(QDir::toNativeSeparators(path), file.errorString());
        return r;
    }
    r.ok = true;
    r.text = textOf(bytes);
    return r;
}

} // namespace kelvora::textFile
