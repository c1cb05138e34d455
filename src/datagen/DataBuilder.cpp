#include "DataBuilder.h"

#include "core/CheckedFile.h"
#include "core/TextUtils.h"
#include "core/Windows1252.h"
#include "morse/PatternLookup.h"
#include "morse/RenderSound.h"
#include "morse/SoundSettings.h"
#include "words/Transaction.h"
#include "words/WordDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSet>
#include <QTemporaryDir>

#include <cerrno>
#include <cstdio>

namespace kelvora::datagen {

namespace {

bool readUtf8Lines(const QString &path, QStringList *lines, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = path + ": " + file.errorString();
        return false;
    }
    const QString text = QString::fromUtf8(file.readAll());
    for (QString line : text.split('\n')) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (!line.isEmpty() && !line.startsWith('#'))
            *lines << line;
    }
    return true;
}

bool checkCharacters(const QString &word, const QSet<QString> &known, const QString &where,
                     QString *error)
{
    for (qsizetype i = 0; i < word.size(); i += text::characterWidth(word, i)) {
        const QString c = word.mid(i, text::characterWidth(word, i));
        if (c != u" " && !known.contains(c.toLower())) {
            *error = QStringLiteral("%1: \"%2\" holds \"%3\", which has no reference row")
                         .arg(where, word, c);
            return false;
        }
        if (!windows1252::canEncode(c.toUcs4().value(0))) {
            *error = QStringLiteral("%1: \"%2\" is not Windows-1252").arg(where, word);
            return false;
        }
    }
    return true;
}

bool buildInto(const QString &outPath, const QString &refTsv, const QStringList &refLines,
               const QStringList &tables, QString *error);

} // namespace

bool buildDatabase(const QString &outPath, const QString &refTsv, const QStringList &tables,
                   QString *error)
{
    QStringList refLines;
    if (!readUtf8Lines(refTsv, &refLines, error))
        return false;
    // Built beside the target and renamed over it once complete: a failure leaves the
    // old database whole, and a target that is not a regular file is never replaced.
    const QFileInfo target(outPath);
    if (target.exists() && !target.isFile()) {
        *error = CheckedFile::failure(outPath, QStringLiteral("ce n'est pas un fichier ordinaire"));
        return false;
    }
    const QString building = outPath + QStringLiteral(".building");
    QFile::remove(building);
    const auto cleanup = qScopeGuard([&] { QFile::remove(building); });
    if (!buildInto(building, refTsv, refLines, tables, error))
        return false;
    if (::rename(QFile::encodeName(building).constData(), QFile::encodeName(outPath).constData()) != 0) {
        *error = CheckedFile::failure(outPath, CheckedFile::reason(errno));
        return false;
    }
    return true;
}

namespace {
bool buildInto(const QString &outPath, const QString &refTsv, const QStringList &refLines,
               const QStringList &tables, QString *error)
{
    WordDatabase db(outPath, WordDatabase::OpenMode::ReadWriteCreate);
    if (!db.isOpen()) {
        *error = db.errorString();
        return false;
    }
    Transaction transaction(db);
    if (!db.exec("CREATE TABLE ref (car TEXT, cw TEXT, wav TEXT)")) {
        *error = db.errorString();
        return false;
    }
    QSet<QString> known;
    for (const QString &line : refLines) {
        const QStringList f = line.split('\t');
        if (f.size() != 3 || text::characterCount(f[0]) != 1) {
            *error = refTsv + ": bad line \"" + line + "\"";
            return false;
        }
        known.insert(f[0].toLower());
        if (!db.exec("INSERT INTO ref (car, cw, wav) VALUES (?, ?, ?)", {f[0], f[1], f[2]})) {
            *error = db.errorString();
            return false;
        }
    }
    for (const QString &table : tables) {
        const QString name = table.section('=', 0, 0);
        const QString file = table.section('=', 1);
        QStringList words;
        if (!readUtf8Lines(file, &words, error))
            return false;
        if (!db.exec("CREATE TABLE " + name + " (mot TEXT )")) {
            *error = db.errorString();
            return false;
        }
        for (const QString &word : words) {
            if (!checkCharacters(word, known, file, error))
                return false;
            if (!db.exec("INSERT INTO " + name + " (mot) VALUES (?)", {word})) {
                *error = db.errorString();
                return false;
            }
        }
    }
    if (!transaction.commit()) {
        *error = db.errorString();
        return false;
    }
    return true;
}
} // namespace

bool buildCharacterSounds(const QString &databasePath, const QString &outDir, QString *error)
{
    WordDatabase db(databasePath, WordDatabase::OpenMode::ReadOnly);
    const QueryResult rows = db.query("select car, wav from ref order by car");
    if (!rows.ok) {
        *error = rows.error;
        return false;
    }
    QDir().mkpath(outDir);
    QTemporaryDir scratch;
    PatternLookup lookup(db);
    SoundSettings settings = SoundSettings::defaults();
    settings.debfin = false;
    for (const QVariantList &row : rows.rows) {
        const SoundTarget target{outDir + '/' + row.value(1).toString(), scratch.filePath("char.txt")};
        const RenderResult r = renderSound({row.value(0).toString()}, settings, lookup, target);
        if (!r.ok) {
            *error = "cannot render " + target.wavPath + ": " + r.error;
            return false;
        }
    }
    return true;
}

bool convertText(const QString &inPath, const QString &outPath, QString *error)
{
    QFile in(inPath);
    if (!in.open(QIODevice::ReadOnly)) {
        *error = inPath + ": " + in.errorString();
        return false;
    }
    QString text = QString::fromUtf8(in.readAll());
    text.replace("\r\n", "\n");
    for (const char32_t cp : text.toUcs4()) {
        if (!windows1252::canEncode(cp)) {
            *error = QStringLiteral("%1: U+%2 is not Windows-1252")
                         .arg(inPath)
                         .arg(quint32(cp), 4, 16, QLatin1Char('0'));
            return false;
        }
    }
    text.replace("\n", "\r\n");
    QDir().mkpath(QFileInfo(outPath).absolutePath());
    return CheckedFile::writeAll(outPath, windows1252::encode(text), error);
}

} // namespace kelvora::datagen
