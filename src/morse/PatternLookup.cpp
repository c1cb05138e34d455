#include "morse/PatternLookup.h"

#include "words/WordDatabase.h"

namespace kelvora {

PatternLookup::PatternLookup(WordDatabase &database)
    : m_database(database)
{
}

QString PatternLookup::condition(const QString &character)
{
    QString c = character.toLower();
    if (c == u'"')
        c = QStringLiteral("\"\"");
    return QStringLiteral("car = \"") + c + u'"';
}

RefRow PatternLookup::findRow(const QString &character, QString *error)
{
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
    return m_current.value_or(RefRow{});
}

} // namespace kelvora
