#include "WordsCommand.h"

#include "CliCommand.h"

#include "settings/AppPaths.h"
#include "settings/SettingKeys.h"
#include "settings/UserProfile.h"
#include "words/RecordSet.h"
#include "words/QueryComposer.h"
#include "words/WordTables.h"

#include <QFileInfo>
#include <QTextStream>

namespace kelvora::cli {

namespace {

int failed(QTextStream &err, const QString &message)
{
    err << message << '\n';
    return exitError;
}

void expectArguments(const Command &c, int count, const char *what)
{
    if (c.positional.size() != count)
        throw UsageError{QString::fromUtf8(what)};
}

} // namespace

int wordsCommand(const Command &c, const SettingsStore &store, const QString &user,
                 const AppPaths &paths, QTextStream &out, QTextStream &err)
{
    if (c.positional.size() < 2)
        throw UsageError{QStringLiteral("La commande words attend une action : tables, count, list, "
                                        "create, export, import, empty, delete ou clean.")};
    const QString action = c.positional[1];
    WordTables tables(paths.wordDatabasePath, QFileInfo(paths.importFilePath).path());

    if (action == QLatin1String("create")) {
        expectArguments(c, 3, "La commande words create attend le nom de la nouvelle table.");
        if (!tables.create(c.positional[2]))
            return failed(err, tables.errorString());
        out << QStringLiteral("Table « %1 » créée.").arg(c.positional[2]) << '\n';
        return exitOk;
    }
    expectArguments(c, 2, "Cette action de la commande words ne prend pas d'autre argument.");
    if (action == QLatin1String("tables")) {
        for (const QString &name : tables.tables())
            out << name << '\n';
        return exitOk;
    }

    QString table = option(c, "--table").value_or(UserProfile::read(store, user).text(userKeys::lasttable));
    if (table.isEmpty())
        table = QStringLiteral("mot");
    const QString condition = option(c, "--where").value_or(QString());
    // The backup's path is told as soon as it is on disk, before the table is touched.
    tables.setBackupDone([&out](const WordTables::Export &backup) {
        out << backup.path << '\n';
        out.flush();
    });

    if (action == QLatin1String("count")) {
        const qint64 n = tables.count(table, condition);
        if (n < 0)
            return failed(err, tables.errorString());
        out << n << '\n';
        return exitOk;
    }
    if (action == QLatin1String("list")) {
        if (!tables.checkTable(table))
            return failed(err, tables.errorString());
        RecordSet records(paths.wordDatabasePath,
                          condition.trimmed().isEmpty()
                              ? QStringLiteral("select * from ") + table + QStringLiteral(" order by mot")
                              : queryComposer::recordSource(table, condition + u'\n'));
        if (!condition.trimmed().isEmpty())
            records.setReadableTable(table);
        if (!records.refresh())
            return failed(err, records.error());
        for (bool more = records.moveFirst(); more; more = records.moveNext())
            out << records.word() << '\n';
        return exitOk;
    }
    if (action == QLatin1String("export")) {
        const WordTables::Export e = tables.exportTable(table);
        if (!e.ok)
            return failed(err, tables.errorString());
        out << e.path << '\n';
        return exitOk;
    }
    if (action == QLatin1String("import")) {
        const QString file = option(c, "--file").value_or(paths.importFilePath);
        const WordTables::Import r = tables.importFile(table, file);
        if (!r.ok)
            return failed(err, tables.errorString());
        if (r.fileMissing)
            err << QStringLiteral("Le fichier « %1 » n'existe pas : aucun mot importé.").arg(file) << '\n';
        out << QStringLiteral("avant import %1 Après import %2").arg(r.before).arg(r.after) << '\n';
        return exitOk;
    }
    if (action == QLatin1String("empty") || action == QLatin1String("delete")) {
        const bool emptying = action == QLatin1String("empty");
        const WordTables::Export e = emptying ? tables.empty(table) : tables.remove(table);
        if (!e.ok)
            return failed(err, tables.errorString());
        out << (emptying ? QStringLiteral("La Table est maintenant vide") : QStringLiteral("La Table est Supprimée"))
            << '\n';
        return exitOk;
    }
    if (action == QLatin1String("clean")) {
        const bool both = !hasFlag(c, "--blank") && !hasFlag(c, "--duplicates");
        if (both || hasFlag(c, "--blank")) {
            const qint64 n = tables.removeBlankWords(table);
            if (n < 0)
                return failed(err, tables.errorString());
            out << QStringLiteral("Mots vides retirés : %1").arg(n) << '\n';
        }
        if (both || hasFlag(c, "--duplicates")) {
            const qint64 n = tables.removeDuplicates(table);
            if (n < 0)
                return failed(err, tables.errorString());
            out << QStringLiteral("Doublons retirés : %1").arg(n) << '\n';
        }
        return exitOk;
    }
    throw UsageError{QStringLiteral("Action inconnue de la commande words : %1").arg(action)};
}

} // namespace kelvora::cli
