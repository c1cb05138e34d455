#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>

namespace kelvora {

class WordDatabase;

// The word tables of the word database as the user manages them: the list, creation,
// export to a dated file in the import folder, import of a word file, emptying,
// deletion and the clean-ups. Every change of a table runs in one transaction, and the
// destructive ones (import, emptying, deletion) first write the whole table to its
// export file, complete on disk, and stop if that fails: a word is never lost.
class WordTables {
public:
    using Clock = std::function<QDateTime()>;
    // Called now and then during long work: what is being done, how far (total 0: unknown).
    enum class Step { Export, Import, Clean, Empty };
    using Progress = std::function<void(Step step, qint64 done, qint64 total)>;

    WordTables(const QString &databasePath, const QString &importDir, Clock now = {});

    void setProgress(Progress progress) { m_progress = std::move(progress); }
    struct Export;
    // Called once the automatic export before an import, an emptying or a deletion is on
    // disk, before the table is touched (the window tells where it is).
    void setBackupDone(std::function<void(const Export &)> done) { m_backupDone = std::move(done); }

    // The tables offered to the user: the engine's ordinary tables other than "ref".
    QStringList tables() const;
    static QStringList wordTables(WordDatabase &db);
    // True when `table` is one of tables() (the operations below refuse any other);
    // otherwise errorString() says why.
    bool checkTable(const QString &table);

    // "CREATE TABLE " + name + " (mot TEXT );" as typed; false when the engine refuses it
    // or the name is not a plain table name.
    bool create(const QString &name);

    // The number of words, with an optional condition of the query dialect that may read
    // this table only; -1 on an error.
    qint64 count(const QString &table, const QString &condition = {});

    struct Export {
        bool ok = false;
        QString path;          // the file written
        QString announcedPath; // the name made again after writing, as the message shows it
        qint64 words = 0;
    };
    // Writes the table, in the record set's order, to importDir/table + MM-DD_hhmmss.txt.
    Export exportTable(const QString &table);
    // The export made before a change, told to whoever asked.
    Export backUp(const QString &table);

    struct Import {
        bool ok = false;
        Export backup;
        bool fileMissing = false; // nothing to read: nothing imported, no file made
        qint64 before = 0;
        qint64 after = 0;
    };
    // Exports the table, then adds the words of `file` and removes the blank and the
    // duplicate words of the whole table, all in one transaction.
    Import importFile(const QString &table, const QString &file);

    // Exports the table, then removes all its words.
    Export empty(const QString &table);
    // Exports the table, then deletes it. "mot" is never deleted.
    Export remove(const QString &table);

    // The clean-ups, each in one transaction; the number of words removed or changed, -1
    // on an error.
    // Words that are empty once their outer blanks are removed (a NULL word stays).
    qint64 removeBlankWords(const QString &table);
    // Words that are exactly empty, a NULL word included (a word of blanks stays).
    qint64 removeEmptyWords(const QString &table);
    // Every word equal, to the byte, to one before it; the first (oldest) is kept, and
    // words that differ in case only are not equal. With `nullAsEmpty` a NULL word counts
    // as the empty word, as the word box shows it.
    qint64 removeDuplicates(const QString &table, bool nullAsEmpty = false);
    // The "è" that arrived as the byte 175 ("¯") is put back in every word.
    qint64 repairAccents(const QString &table);

    // In French, naming the file or the table and the reason; empty after a success.
    QString errorString() const { return m_error; }

private:
    bool checkImportDir();
    qint64 changeTable(const QString &table, const QString &sql);
    qint64 cleanUp(WordDatabase &db, const QString &table, const QString &sql);
    static QString blankWordsSql();
    static QString duplicatesSql(bool nullAsEmpty);
    QDateTime now() const { return m_now ? m_now() : QDateTime::currentDateTime(); }
    void report(Step step, qint64 done, qint64 total) const;

    QString m_databasePath;
    QString m_importDir;
    Clock m_now;
    Progress m_progress;
    std::function<void(const Export &)> m_backupDone;
    QString m_error;
};

} // namespace kelvora
