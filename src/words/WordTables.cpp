#include "words/WordTables.h"

#include "core/CheckedFile.h"
#include "words/WordBlock.h"
#include "words/WordDatabase.h"
#include "words/WordFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kelvora {

namespace {

constexpr qint64 reportEvery = 8192;
constexpr qsizetype writeChunk = 1 << 20;
// A condition typed by the user may not run for ever.
constexpr int conditionTimeLimitMs = 2000;

QString chevrons(const QString &text)
{
    return QStringLiteral("« ") + text + QStringLiteral(" »");
}

} // namespace

WordTables::WordTables(const QString &databasePath, const QString &importDir, Clock now)
    : m_databasePath(databasePath)
    , m_importDir(importDir)
    , m_now(std::move(now))
{
}

void WordTables::report(Step step, qint64 done, qint64 total) const
{
    if (m_progress)
        m_progress(step, done, total);
}

QStringList WordTables::wordTables(WordDatabase &db)
{
    QStringList names;
    for (const TableDefinition &table : db.tableDefinitions()) {
        if (table.attributes == 0 && table.name != QLatin1String("ref"))
            names << table.name;
    }
    return names;
}

QStringList WordTables::tables() const
{
    WordDatabase db(m_databasePath, WordDatabase::OpenMode::ReadOnly);
    return wordTables(db);
}

bool WordTables::checkTable(const QString &table)
{
    m_error.clear();
    WordDatabase db(m_databasePath, WordDatabase::OpenMode::ReadOnly);
    if (!db.isOpen()) {
        m_error = db.errorString();
        return false;
    }
    if (!wordTables(db).contains(table, Qt::CaseInsensitive)) {
        m_error = QStringLiteral("La table %1 n'existe pas dans la base de mots.").arg(chevrons(table));
        return false;
    }
    return true;
}

bool WordTables::create(const QString &name)
{
    m_error.clear();
    WordDatabase db(m_databasePath);
    // The name goes into the statement as typed: one that is not a plain name could
    // bring more than a table with it.
    if (!WordDatabase::isTableName(name) || !db.exec(QStringLiteral("CREATE TABLE ") + name + QStringLiteral(" (mot TEXT );"))) {
        m_error = QStringLiteral("erreur de creation de table");
        return false;
    }
    return true;
}

qint64 WordTables::count(const QString &table, const QString &condition)
{
    if (!checkTable(table))
        return -1;
    WordDatabase db(m_databasePath, WordDatabase::OpenMode::ReadOnly);
    QString sql = QStringLiteral("select count(*) from ") + table;
    if (!condition.trimmed().isEmpty()) {
        db.readOnly(table);
        db.setTimeLimit(conditionTimeLimitMs);
        sql += QStringLiteral(" where ") + condition + u'\n'; // a trailing comment ends here
    }
    const QueryResult r = db.query(sql);
    if (!r.ok || r.rows.empty()) {
        m_error = r.error;
        return -1;
    }
    return r.rows.front().value(0).toLongLong();
}

bool WordTables::checkImportDir()
{
    const QFileInfo dir(m_importDir);
    if (!dir.isDir()) {
        m_error = QStringLiteral("Le dossier %1 n'existe pas : la table n'a pas été touchée.")
                      .arg(chevrons(QDir::toNativeSeparators(m_importDir)));
        return false;
    }
    return true;
}

WordTables::Export WordTables::exportTable(const QString &table)
{
    Export result;
    if (!checkTable(table) || !checkImportDir())
        return result;
    WordDatabase db(m_databasePath, WordDatabase::OpenMode::ReadOnly);
    WordBlock words;
    report(Step::Export, 0, 0);
    if (!db.scanText(QStringLiteral("select mot from ") + table, {}, [&words](std::string_view word) {
            words.append(word);
            return true;
        })) {
        m_error = db.errorString();
        return result;
    }
    const std::vector<quint32> order = words.recordOrder();

    const QString name = wordFile::exportName(table, now());
    result.path = QDir(m_importDir).filePath(name);
    // Two exports in one second (an emptying, then an import) must not overwrite each
    // other: the later one takes "_2", "_3"...
    int n = 1;
    while (QFileInfo::exists(result.path))
        result.path = QDir(m_importDir).filePath(name.chopped(4) + u'_' + QString::number(++n) + QStringLiteral(".txt"));
    CheckedFile file(result.path);
    file.setDurable(true); // the backup must be on disk before the table is touched
    QByteArray chunk;
    chunk.reserve(writeChunk + 512);
    bool ok = file.open();
    for (size_t i = 0; ok && i < order.size(); ++i) {
        wordFile::appendLine(chunk, words.word(order[i]));
        if (chunk.size() >= writeChunk) {
            ok = file.write(chunk);
            chunk.clear();
        }
        if (i % reportEvery == 0)
            report(Step::Export, qint64(i), qint64(order.size()));
    }
    ok = ok && file.write(chunk) && file.commit();
    if (!ok) {
        m_error = file.errorString() + QStringLiteral(" La table n'a pas été touchée.");
        return result;
    }
    result.ok = true;
    result.words = qint64(order.size());
    // Named again once written, as the message always did: a long export names a later
    // second. A numbered name is told as it is.
    result.announcedPath = n == 1 ? QDir(m_importDir).filePath(wordFile::exportName(table, now())) : result.path;
    return result;
}

WordTables::Export WordTables::backUp(const QString &table)
{
    Export backup = exportTable(table);
    if (backup.ok && m_backupDone)
        m_backupDone(backup);
    return backup;
}

qint64 WordTables::cleanUp(WordDatabase &db, const QString &table, const QString &sql)
{
    db.setInterruptCheck([this] {
        report(Step::Clean, 0, 0);
        return true;
    });
    QString statement = sql;
    statement.replace(QStringLiteral("$T"), table);
    if (!db.exec(statement))
        return -1;
    return db.changes();
}

WordTables::Import WordTables::importFile(const QString &table, const QString &file)
{
    Import result;
    result.backup = backUp(table);
    if (!result.backup.ok)
        return result;

    // The words go to the table one at a time, never held all at once. (Read, not mapped:
    // a mapped file cut short by another program would kill this one.)
    QFile input(file);
    QByteArray bytes;
    if (!input.exists()) {
        result.fileMissing = true; // nothing to import; the clean-up still runs
    } else if (!input.open(QIODevice::ReadOnly)) {
        m_error = QStringLiteral("Impossible de lire le fichier %1 : %2")
                      .arg(chevrons(QDir::toNativeSeparators(file)), input.errorString());
        return result;
    } else {
        bytes = input.readAll();
    }

    WordDatabase db(m_databasePath);
    const QString insert = QStringLiteral("insert into ") + table + QStringLiteral(" (mot) values (?)");
    const QString countAll = QStringLiteral("select count(*) from ") + table;
    const bool ok = db.write([&](WordDatabase &w) {
        const QueryResult before = w.query(countAll);
        if (!before.ok)
            return false;
        result.before = before.rows.front().value(0).toLongLong();
        qint64 added = 0;
        const bool allAdded = wordFile::forEachWord(bytes, [&](const QString &word, qsizetype read) {
            if (!w.exec(insert, {word}))
                return false;
            if (added++ % reportEvery == 0)
                report(Step::Import, read, bytes.size());
            return true;
        });
        if (!allAdded)
            return false;
        if (cleanUp(w, table, blankWordsSql()) < 0 || cleanUp(w, table, duplicatesSql(false)) < 0)
            return false;
        const QueryResult after = w.query(countAll);
        if (!after.ok)
            return false;
        result.after = after.rows.front().value(0).toLongLong();
        return true;
    });
    if (!ok) {
        m_error = db.errorString() + QStringLiteral(" La table est restée comme avant l'import.");
        return result;
    }
    result.ok = true;
    return result;
}

WordTables::Export WordTables::empty(const QString &table)
{
    Export backup = backUp(table);
    if (!backup.ok)
        return backup;
    WordDatabase db(m_databasePath);
    report(Step::Empty, 0, 0);
    if (!db.write([&table](WordDatabase &w) { return w.exec(QStringLiteral("delete from ") + table); })) {
        m_error = db.errorString();
        backup.ok = false;
    }
    return backup;
}

WordTables::Export WordTables::remove(const QString &table)
{
    if (table == QLatin1String("mot")) {
        m_error = QStringLiteral("La table « mot » ne peut pas être supprimée.");
        return {};
    }
    Export backup = backUp(table);
    if (!backup.ok)
        return backup;
    WordDatabase db(m_databasePath);
    if (!db.exec(QStringLiteral("drop table ") + table)) {
        m_error = db.errorString();
        backup.ok = false;
    }
    return backup;
}

QString WordTables::blankWordsSql()
{
    return QStringLiteral("delete from $T where length(trim(mot, ' ')) = 0");
}

QString WordTables::duplicatesSql(bool nullAsEmpty)
{
    // Identical words are side by side in the record order and the first of each run
    // stays: that is the oldest row of each exact text (GROUP BY compares bytes).
    return nullAsEmpty
        ? QStringLiteral("delete from $T where rowid not in "
                         "(select min(rowid) from $T group by ifnull(mot, ''))")
        : QStringLiteral("delete from $T where mot is not null and rowid not in "
                         "(select min(rowid) from $T where mot is not null group by mot)");
}

qint64 WordTables::changeTable(const QString &table, const QString &sql)
{
    if (!checkTable(table))
        return -1;
    WordDatabase db(m_databasePath);
    qint64 changed = -1;
    if (!db.write([&](WordDatabase &w) { return (changed = cleanUp(w, table, sql)) >= 0; })) {
        m_error = db.errorString();
        return -1;
    }
    return changed;
}

qint64 WordTables::removeBlankWords(const QString &table)
{
    return changeTable(table, blankWordsSql());
}

qint64 WordTables::removeEmptyWords(const QString &table)
{
    return changeTable(table, QStringLiteral("delete from $T where mot is null or length(mot) = 0"));
}

qint64 WordTables::removeDuplicates(const QString &table, bool nullAsEmpty)
{
    return changeTable(table, duplicatesSql(nullAsEmpty));
}

qint64 WordTables::repairAccents(const QString &table)
{
    return changeTable(table, QStringLiteral("update $T set mot = replace(mot, '\u00af', '\u00e8') "
                                             "where instr(mot, '\u00af') > 0"));
}

} // namespace kelvora
