#include "TextCommand.h"

#include "CliCommand.h"
#include "settings/AppPaths.h"
#include "texttools/Accents.h"
#include "texttools/TextFile.h"
#include "texttools/Transforms.h"

#include <QDir>
#include <QTextStream>

#include <functional>
#include <utility>

namespace kelvora::cli {

int transformCommand(const Command &c, QIODevice &in, QTextStream &out, QTextStream &)
{
    static const std::pair<const char *, std::function<QString(const QString &)>> tools[] = {
        {"groups", textTools::fiveCharacterGroups},
        {"accents", textTools::acc},
        {"reverse", textTools::reversed},
        {"spaces", textTools::spacedOut},
    };
    if (c.positional.size() != 2)
        throw UsageError{QStringLiteral("La commande transform attend un outil : groups, accents, reverse ou spaces.")};
    for (const auto &[name, tool] : tools) {
        if (c.positional[1] == QLatin1String(name)) {
            out << tool(readText(c, in));
            return exitOk;
        }
    }
    throw UsageError{QStringLiteral("Outil inconnu : %1 (groups, accents, reverse ou spaces).").arg(c.positional[1])};
}

int textFileCommand(const Command &c, const AppPaths &paths, QTextStream &out, QTextStream &err)
{
    if (c.positional.size() != 2)
        throw UsageError{QStringLiteral("La commande textfile attend le nom d'un fichier du dossier textes.")};
    const textFile::Read file = textFile::read(QDir(paths.textFolder()).filePath(c.positional[1]));
    if (!file.ok) {
        err << file.error << '\n';
        return exitError;
    }
    const auto present = option(c, "--append");
    out << textFile::loaded(present.value_or(QString()), present.has_value(), file.text);
    return exitOk;
}

} // namespace kelvora::cli
