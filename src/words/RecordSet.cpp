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

QString RecordSet::withRowid(const QString &source)
{
    static const QRegularExpression selectAll(QStringLiteral("^\\s*select\\s+\\*\\s"),
                                              QRegularExpression::CaseInsensitiveOption);
    // An order on one column ends with the exact text, then the row, so that identical
    // words always stand side by side and in the same order.
    static const QRegularExpression orderByColumn(QStringLiteral("\\border\\s+by\\s+(\\w+)\\s*$"),
                                                  QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch m = selectAll.match(source);
    if (!m.hasMatch())
        return source;
    QString sql = QStringLiteral("select rowid, * ") + source.mid(m.capturedEnd());
    const QRegularExpressionMatch order = orderByColumn.match(sql);
    if (order.hasMatch())
        sql += QStringLiteral(", ") + order.captured(1) + QStringLiteral(" collate binary, rowid");
    return sql;
}

void RecordSet::clearRows()
{
    m_rows.clear();
    m_position = -1;
}

bool RecordSet::refresh()
{
    m_error.clear();
    m_timedOut = false;
    if (m_source.trimmed().isEmpty()) {
        clearRows();
        return true; // no source: an empty set, as a closed data control shows
    }

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
    const QString sql = withRowid(m_source);
    const QueryResult result = db.query(sql);
    if (!result.ok) {
        m_error = result.error;
        m_timedOut = result.timedOut;
        qCWarning(lcWords) << "record set:" << m_error;
        if (!m_timedOut)
            clearRows();
        return false;
    }
    clearRows();
    const bool hasRowid = sql != m_source;
    const qsizetype first = hasRowid ? 1 : 0;
    qsizetype wordColumn = result.columns.indexOf(QStringLiteral("mot"), first);
    if (wordColumn < 0) {
        for (qsizetype i = first; i < result.columns.size() && wordColumn < 0; ++i) {
            if (result.columns[i].compare(QStringLiteral("mot"), Qt::CaseInsensitive) == 0)
                wordColumn = i;
        }
    }
    if (wordColumn < 0)
        wordColumn = first;
    m_rows.reserve(result.rows.size());
    for (const QVariantList &row : result.rows) {
        Row r;
        if (hasRowid)
            r.rowid = row.value(0).toLongLong();
        r.word = row.value(wordColumn).toString();
        m_rows.push_back(std::move(r));
    }
    if (!m_rows.empty())
        m_position = 0;
    return true;
}

bool RecordSet::moveTo(int position)
{
    if (m_rows.empty())
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
    return m_position < 0 ? QString() : m_rows[size_t(m_position)].word;
}

qint64 RecordSet::rowid() const
{
    return m_position < 0 ? -1 : m_rows[size_t(m_position)].rowid;
}

} // namespace kelvora
