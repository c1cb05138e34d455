#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace kelvora {

// One table definition as the engine enumerates it. `attributes` is 0 for an ordinary
// user table and non-zero for the engine's own tables (sqlite_*).
struct TableDefinition {
    QString name;
    int attributes = 0;
};

struct QueryResult {
    bool ok = false;
    QString error;            // French, empty when ok
    bool timedOut = false;    // stopped by the time limit (see setTimeLimit)
    QStringList columns;
    std::vector<QVariantList> rows;
};

// One row of WordDatabase::scanRows(), read straight from the engine: valid until the
// next row.
class RowView {
public:
    QStringList columnNames() const;
    qint64 integer(int column) const;
    // The engine's UTF-8; no data at all for NULL.
    std::string_view text(int column) const;
    // A text or NULL: what a word column holds (not a number nor a blob).
    bool holdsText(int column) const;

private:
    friend class WordDatabase;
    explicit RowView(sqlite3_stmt *statement) : m_statement(statement) {}
    sqlite3_stmt *m_statement;
};

// The word database: one SQLite file opened by path. Every call runs exactly one
// statement written in the program's own query dialect (double-quoted strings,
// "like" with * ? # [..] [!..], len(), case-insensitive comparisons and a
// case-insensitive French "order by"); the translation to SQLite happens here.
// Prepared statements are kept in a small cache keyed by the program's text, so a
// statement run again and again (one per character while rendering) is prepared once.
class WordDatabase {
public:
    enum class OpenMode { ReadWrite, ReadWriteCreate, ReadOnly };

    explicit WordDatabase(const QString &path, OpenMode mode = OpenMode::ReadWrite);
    ~WordDatabase();
    WordDatabase(const WordDatabase &) = delete;
    WordDatabase &operator=(const WordDatabase &) = delete;

    bool isOpen() const;
    QString path() const;
    QString errorString() const; // last error, French

    // A statement that returns no rows. Values bind to '?' placeholders in order.
    bool exec(const QString &sql, const QVariantList &values = {});
    // A statement that returns rows; maxRows < 0 reads them all.
    QueryResult query(const QString &sql, const QVariantList &values = {}, int maxRows = -1);
    // The first column of each row, as the engine's UTF-8 (valid until the next row), for
    // reading a whole table without building a value per cell. NULL reads as empty. The
    // callback returns false to stop early. False on an error (errorString()).
    bool scanText(const QString &sql, const QVariantList &values,
                  const std::function<bool(std::string_view)> &row);

    // Every row, for reading many rows without a value per cell; the callback returns
    // false to stop early. False on an error (errorString(), timedOut()).
    bool scanRows(const QString &sql, const QVariantList &values, const std::function<bool(const RowView &)> &row);

    // Rows changed by the last insert, update or delete.
    qint64 changes() const;

    bool transaction();
    bool commit();
    bool rollback();

    // Runs `work` in one transaction: committed when it returns true, rolled back when it
    // returns false (or the commit fails), so that a table is changed whole or not at all.
    bool write(const std::function<bool(WordDatabase &)> &work);

    // From now on, until readAnything(), a statement prepared on this connection may
    // read `table` and call functions, and nothing else: no other table, no writing,
    // no pragma, no attach, no recursion. For conditions typed by the user.
    void readOnly(const QString &table);
    void readAnything();

    // From now on a query that runs longer than `ms` (0: no limit) is stopped and fails
    // with timedOut set. For conditions typed by the user, which may never end.
    void setTimeLimit(int ms);
    // From now on a running statement asks `keepGoing` every few thousand steps and stops
    // (failing, as interrupted) when it answers false. Empty: nobody is asked.
    void setInterruptCheck(std::function<bool()> keepGoing);
    // True when the last statement failed because it was stopped (time limit or check).
    bool wasInterrupted() const;
    // True when the last query() or scanRows() was stopped by the time limit.
    bool timedOut() const;

    // A name that can stand as a table in a statement: letters, digits and "_", not
    // starting with a digit, and not one of the engine's own tables.
    static bool isTableName(const QString &name);

    // Changes whenever a transaction is committed to the file at `path`, by this program
    // or another (the engine's change counter, with the file's size and time). Empty
    // when it cannot tell: no readable database, or one in write-ahead-log mode, whose
    // commits leave the counter alone.
    static QByteArray changeStamp(const QString &path);

    std::vector<TableDefinition> tableDefinitions();

    sqlite3 *handle() const;

private:
    // scanRows(); a stop by the time limit is told as such (timedOut(), its own message)
    // only when `tellTimeOut`.
    bool scan(const QString &sql, const QVariantList &values, const std::function<bool(const RowView &)> &row,
              bool tellTimeOut);

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace kelvora
