#pragma once

#include "words/WordBlock.h"

#include <QString>

#include <vector>

namespace kelvora {

class WordDatabase;

// The rows of one record source written in the program's query dialect ("select * from
// mot order by mot"), with a current position, as the main window's bound record set
// uses them. Word tables have no key and may hold duplicates, so each row keeps SQLite's
// rowid. The rows are a snapshot: refresh() reads the source again.
class RecordSet {
public:
    RecordSet() = default;
    RecordSet(const QString &databasePath, const QString &source);

    void setDatabasePath(const QString &path) { m_databasePath = path; }
    QString databasePath() const { return m_databasePath; }
    void setSource(const QString &source) { m_source = source; }
    QString source() const { return m_source; }
    // When set, the source may read this table and nothing else (the user typed part of
    // it); empty: the source is the program's own.
    void setReadableTable(const QString &table) { m_readableTable = table; }
    // How long a source the user typed may run (2 s; tests shorten it).
    void setTimeLimit(int ms) { m_timeLimitMs = ms; }

    // Reads the source again and stands on the first row; when neither the source nor the
    // file has changed since the last read, the rows read then are kept. False when the
    // source fails (a table that does not exist, a bad condition): the set is then empty.
    // A source the user typed that runs past the time limit is stopped and leaves the set
    // as it was (timedOut()).
    bool refresh();
    QString error() const { return m_error; }
    bool timedOut() const { return m_timedOut; }

    int count() const { return int(m_rows.order.size()); }
    bool isEmpty() const { return m_rows.order.empty(); }
    // Zero-based position of the current row, -1 when there is none.
    int position() const { return m_position; }

    // Moves stop at the first and the last row, as the navigation arrows do.
    bool moveFirst();
    bool movePrevious();
    bool moveNext();
    bool moveLast();
    bool moveTo(int position);

    // The column mot of the current row; empty when there is no current row.
    QString word() const;
    // The current row's rowid; -1 when there is none or the source gives no rowid.
    qint64 rowid() const;

    // The statement run for `source`: "select *" becomes "select rowid, *", so that
    // every row can be addressed, and "order by mot" at the end is followed by the exact
    // text and the rowid, so that equal words always come in one order.
    static QString withRowid(const QString &source);

private:
    // The rows as read, and the order they are shown in (indexes into them).
    struct Rows {
        WordBlock words;
        std::vector<qint64> rowids;
        std::vector<quint32> order;
    };
    static bool readAsGiven(WordDatabase &db, const QString &sql, bool hasRowid, Rows &rows);
    static bool readAndSort(WordDatabase &db, const QString &sql, Rows &rows, bool &sorted);
    void clearRows();

    QString m_databasePath;
    QString m_source;
    QString m_readableTable;
    int m_timeLimitMs = 2000;
    QString m_error;
    bool m_timedOut = false;
    Rows m_rows;
    int m_position = -1;
    // What the rows were read from: the same again needs no reading.
    QByteArray m_readStamp;
};

} // namespace kelvora
