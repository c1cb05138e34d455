#include "words/RecordSet.h"

#include "core/Logging.h"
#include "words/WordDatabase.h"

#include <QRegularExpression>

#include <algorithm>

namespace kelvora {

RecordSet::RecordSet(const QString &databasePath, const QString &source)
    : m_databasePath(databasePath)
    , m_source(source)
{
}

namespace {

const QRegularExpression &selectAll()
{
    static const QRegularExpression re(QStringLiteral("^\\s*select\\s+\\*\\s"),
                                       QRegularExpression::CaseInsensitiveOption);
    return re;
}

const QRegularExpression &orderByColumn()
{
    static const QRegularExpression re(QStringLiteral("\\border\\s+by\\s+(\\w+)\\s*$"),
                                       QRegularExpression::CaseInsensitiveOption);
    return re;
}

// The column that holds the word: "mot", whatever its case, or else the first one.
qsizetype wordColumnOf(const QStringList &columns, qsizetype first)
{
    qsizetype column = columns.indexOf(QStringLiteral("mot"), first);
    for (qsizetype i = first; i < columns.size() && column < 0; ++i) {
        if (columns[i].compare(QStringLiteral("mot"), Qt::CaseInsensitive) == 0)
            column = i;
    }
    return column < 0 ? first : column;
}

// "select * from T ... order by mot" read in the table's own order, to be sorted here:
// the engine calling the French comparison for every pair takes twice as long as
// sorting the words read once. Empty when the source is not of that shape.
QString inRowidOrder(const QString &source)
{
    const QRegularExpressionMatch select = selectAll().match(source);
    const QRegularExpressionMatch order = orderByColumn().match(source);
    if (!select.hasMatch() || !order.hasMatch()
        || order.captured(1).compare(QStringLiteral("mot"), Qt::CaseInsensitive) != 0)
        return {};
    const qsizetype from = select.capturedEnd();
    return QStringLiteral("select rowid, * ") + source.mid(from, order.capturedStart() - from)
        + QStringLiteral("order by rowid");
}

} // namespace

QString RecordSet::withRowid(const QString &source)
{
    const QRegularExpressionMatch m = selectAll().match(source);
    if (!m.hasMatch())
        return source;
    QString sql = QStringLiteral("select rowid, * ") + source.mid(m.capturedEnd());
    // An order on one column ends with the exact text, then the row, so that identical
    // words always stand side by side and in the same order.
    const QRegularExpressionMatch order = orderByColumn().match(sql);
    if (order.hasMatch())
        sql += QStringLiteral(", ") + order.captured(1) + QStringLiteral(" collate binary, rowid");
    return sql;
}

void RecordSet::clearRows()
{
    m_rows = {};
    m_position = -1;
    m_readStamp.clear();
}

bool RecordSet::readAndSort(WordDatabase &db, const QString &sql, Rows &rows, bool &sorted)
{
    qsizetype wordColumn = -1;
    std::vector<bool> null;
    sorted = true;
    const bool ok = db.scanRows(sql, {}, [&](const RowView &row) {
        if (wordColumn < 0) {
            const QStringList columns = row.columnNames();
            wordColumn = wordColumnOf(columns, 1);
            sorted = columns.value(wordColumn).compare(QStringLiteral("mot"), Qt::CaseInsensitive) == 0;
        }
        // A number or a blob sorts apart from the texts: the engine's order then.
        sorted = sorted && row.holdsText(int(wordColumn));
        if (!sorted)
            return false;
        const std::string_view word = row.text(int(wordColumn));
        null.push_back(word.data() == nullptr);
        rows.rowids.push_back(row.integer(0));
        rows.words.append(word);
        return true;
    });
    if (!ok || !sorted)
        return ok;
    // Rows read in rowid order: equal words stay in rowid order, as "order by mot, mot
    // collate binary, rowid" has them; NULL comes before every text.
    rows.order = rows.words.recordOrder();
    std::stable_partition(rows.order.begin(), rows.order.end(), [&null](quint32 i) { return null[i]; });
    return true;
}

bool RecordSet::readAsGiven(WordDatabase &db, const QString &sql, bool hasRowid, Rows &rows)
{
    const QueryResult result = db.query(sql);
    if (!result.ok)
        return false;
    const qsizetype first = hasRowid ? 1 : 0;
    const qsizetype wordColumn = wordColumnOf(result.columns, first);
    for (const QVariantList &row : result.rows) {
        rows.rowids.push_back(hasRowid ? row.value(0).toLongLong() : -1);
        const QVariant word = row.value(wordColumn);
        const QByteArray utf8 = word.toString().toUtf8();
        rows.words.append(word.isNull() ? std::string_view() : std::string_view(utf8.constData(), size_t(utf8.size())));
        rows.order.push_back(quint32(rows.order.size()));
    }
    return true;
}

bool RecordSet::refresh()
{
    m_error.clear();
    m_timedOut = false;
    if (m_source.trimmed().isEmpty()) {
        clearRows();
        return true; // no source: an empty set, as a closed data control shows
    }
    // Taken before reading: a commit during the read makes the next refresh read again.
    QByteArray stamp = WordDatabase::changeStamp(m_databasePath);
    if (!stamp.isEmpty())
        stamp += '\n' + m_databasePath.toUtf8() + '\n' + m_source.toUtf8() + '\n' + m_readableTable.toUtf8();
    if (!stamp.isEmpty() && stamp == m_readStamp) {
        m_position = m_rows.order.empty() ? -1 : 0;
        return true;
    }
    m_readStamp.clear();
    WordDatabase db(m_databasePath, WordDatabase::OpenMode::ReadOnly);
    if (!db.isOpen()) {
        clearRows();
        m_error = db.errorString();
        qCWarning(lcWords) << "record set:" << m_error;
        return false;
    }
    if (!m_readableTable.isEmpty()) {
        db.readOnly(m_readableTable);
        db.setTimeLimit(m_timeLimitMs);
    }
    Rows rows;
    bool sorted = false;
    const QString unsorted = inRowidOrder(m_source);
    bool ok = !unsorted.isEmpty() && readAndSort(db, unsorted, rows, sorted);
    if (!sorted) {
        const QString sql = withRowid(m_source);
        rows = {};
        ok = readAsGiven(db, sql, sql != m_source, rows);
    }
    if (!ok) {
        m_error = db.errorString();
        m_timedOut = db.timedOut();
        qCWarning(lcWords) << "record set:" << m_error;
        if (!m_timedOut)
            clearRows();
        return false;
    }
    m_rows = std::move(rows);
    m_position = m_rows.order.empty() ? -1 : 0;
    m_readStamp = stamp;
    return true;
}

bool RecordSet::moveTo(int position)
{
    if (m_rows.order.empty())
        return false;
    m_position = std::clamp(position, 0, count() - 1);
    return m_position == position;
}

bool RecordSet::moveFirst()
{
    return moveTo(0);
}

bool RecordSet::movePrevious()
{
    return moveTo(m_position - 1);
}

bool RecordSet::moveNext()
{
    return moveTo(m_position + 1);
}

bool RecordSet::moveLast()
{
    return moveTo(count() - 1);
}

QString RecordSet::word() const
{
    return m_position < 0 ? QString() : m_rows.words.word(m_rows.order[size_t(m_position)]);
}

qint64 RecordSet::rowid() const
{
    return m_position < 0 ? -1 : m_rows.rowids[m_rows.order[size_t(m_position)]];
}

} // namespace kelvora
