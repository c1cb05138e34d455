#include "morse/PatternLookup.h"

#include "words/Transaction.h"
#include "words/WordDatabase.h"

#include <sqlite3.h>

namespace kelvora {

PatternLookup::PatternLookup(WordDatabase &database)
    : m_database(database)
{
}

std::vector<QString> PatternLookup::characters(QString *error)
{
    std::vector<QString> characters;
    const QueryResult ref = m_database.query(QStringLiteral("select car from ref order by car"));
    if (!ref.ok && error)
        *error = ref.error;
    for (const QVariantList &row : ref.rows)
        characters.push_back(row.value(0).isNull() ? QString() : row.value(0).toString());
    return characters;
}

QString PatternLookup::condition(const QString &character)
{
    QString c = character.toLower();
    if (c == u'"')
        c = QStringLiteral("\"\"");
    return QStringLiteral("car = \"") + c + u'"';
}

PatternLookup::Snapshot::Snapshot(PatternLookup &lookup)
    : m_lookup(lookup)
    , m_transaction(std::make_unique<Transaction>(lookup.m_database))
{
    // Inside a transaction (ours or the caller's) no other connection can change what
    // this one reads.
    m_lookup.m_remember =
        lookup.m_database.handle() && sqlite3_get_autocommit(lookup.m_database.handle()) == 0;
}

PatternLookup::Snapshot::~Snapshot()
{
    m_lookup.m_remember = false;
    m_lookup.m_remembered.clear();
}

RefRow PatternLookup::findRow(const QString &character, QString *error)
{
    if (m_remember) {
        const auto it = m_remembered.constFind(character.toLower());
        if (it != m_remembered.constEnd()) {
            if (it->has_value())
                m_current = **it;
            return m_current.value_or(RefRow{});
        }
    }
    const QueryResult result = m_database.query(
        QStringLiteral("select * from ref where ") + condition(character)
            + QStringLiteral(" order by car"),
        {}, 1);
    if (!result.ok) {
        if (error)
            *error = result.error;
    } else if (!result.rows.empty()) {
        const QVariantList &row = result.rows.front();
        RefRow found;
        for (qsizetype i = 0; i < result.columns.size() && i < row.size(); ++i) {
            const QString column = result.columns[i].toLower();
            if (column == u"car")
                found.car = row[i].toString();
            else if (column == u"cw")
                found.cw = row[i].toString();
            else if (column == u"wav")
                found.wav = row[i].toString();
        }
        m_current = std::move(found);
    }
    if (m_remember && result.ok)
        m_remembered.insert(character.toLower(),
                            result.rows.empty() ? std::nullopt : m_current);
    return m_current.value_or(RefRow{});
}

} // namespace kelvora
