// kelvora-datagen: makes the data of the installation tree from the repository's sources.
//   db    --out FILE --ref TSV [--table NAME=WORDS.txt ...]   word database
//   wav   --db FILE --out DIR                                 one sound per reference row
//   qrm   --out DIR                                           the three noise recordings
//   text  --out FILE IN.txt                                   UTF-8 → Windows-1252, CR LF
#include "DataBuilder.h"
#include "NoiseGenerator.h"

#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

QStringList values(const QStringList &args, const QString &name)
{
    QStringList out;
    for (qsizetype i = 0; i + 1 < args.size(); ++i) {
        if (args[i] == name)
            out << args[i + 1];
    }
    return out;
}

QString value(const QStringList &args, const QString &name)
{
    const QStringList v = values(args, name);
    return v.isEmpty() ? QString() : v.last();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    QTextStream err(stderr);
    const QString command = args.size() > 1 ? args[1] : QString();
    QString error;
    bool ok = false;
    if (command == "db") {
        ok = kelvora::datagen::buildDatabase(value(args, "--out"), value(args, "--ref"),
                                             values(args, "--table"), &error);
    } else if (command == "wav") {
        ok = kelvora::datagen::buildCharacterSounds(value(args, "--db"), value(args, "--out"),
                                                    &error);
    } else if (command == "qrm") {
        ok = kelvora::noise::writeQrmFiles(value(args, "--out"), &error);
    } else if (command == "text") {
        ok = kelvora::datagen::convertText(args.last(), value(args, "--out"), &error);
    } else {
        error = QStringLiteral("usage: kelvora-datagen db|wav|qrm|text ...");
    }
    if (!ok) {
        err << "kelvora-datagen " << command << ": " << error << '\n';
        return 1;
    }
    return 0;
}
