#include "exercises/TableWords.h"

#include "words/QueryDialect.h"
#include "words/WordDatabase.h"

#include <algorithm>
#include <numeric>

namespace kelvora {

namespace {

using Order = std::vector<quint32>;

// Puts the rows of `ranks` (sorted, 0-based, relative to the whole order) in their
// place, leaving the others wherever nth_element leaves them: a few ranks out of many
// rows cost about as many comparisons as rows times log(ranks), not a full sort.
template<typename Less>
void placeRanks(Order::iterator first, Order::iterator last, size_t base, const int *rankFirst,
                const int *rankLast, const Less &less)
{
    if (rankFirst == rankLast || first == last)
        return;
    const int *middle = rankFirst + (rankLast - rankFirst) / 2;
    const auto nth = first + (size_t(*middle) - base);
    std::nth_element(first, nth, last, less);
    placeRanks(first, nth, base, rankFirst, middle, less);
    placeRanks(nth + 1, last, size_t(*middle) + 1, middle + 1, rankLast, less);
}

} // namespace

TableWords::TableWords(const QString &databasePath, const QString &table, const QString &condition)
    : m_databasePath(databasePath)
    , m_table(table)
    , m_condition(condition.trimmed())
{
}

QString TableWords::select() const
{
    QString sql = QStringLiteral("select mot from ") + m_table;
    if (!m_condition.isEmpty())
        sql += QStringLiteral(" where ") + m_condition + u'\n'; // a trailing comment ends here
    return sql;
}

bool TableWords::open(WordDatabase &db)
{
    m_error.clear();
    if (!WordDatabase::isTableName(m_table)) {
        m_error = QStringLiteral("« %1 » n'est pas un nom de table.").arg(m_table);
        return false;
    }
    if (!db.isOpen()) {
        m_error = db.errorString();
        return false;
    }
    if (!m_condition.isEmpty()) {
        // Typed by the user: it may read this table only, and not for ever.
        db.readOnly(m_table);
        db.setTimeLimit(m_timeLimitMs);
    }
    return true;
}

const WordBlock *TableWords::scanned()
{
    if (!m_words) {
        WordBlock words;
        if (!scan(select(), {}, words))
            return nullptr;
        m_words = std::move(words);
    }
    return &*m_words;
}

int TableWords::count()
{
    const WordBlock *words = scanned();
    return words ? int(words->size()) : 0;
}

bool TableWords::scan(const QString &sql, const QVariantList &values, WordBlock &words,
                      const std::function<bool()> &keepGoing)
{
    WordDatabase db(m_databasePath, WordDatabase::OpenMode::ReadOnly);
    if (!open(db))
        return false;
    if (keepGoing)
        db.setInterruptCheck(keepGoing);
    const bool ok = db.scanText(sql, values, [&words](std::string_view word) {
        words.append(word);
        return true;
    });
    if (!ok)
        m_error = db.errorString();
    return ok;
}

std::vector<QString> TableWords::wordsAt(const std::vector<int> &positions)
{
    std::vector<QString> result(positions.size());
    if (!scanned() || m_words->empty())
        return result;
    const WordBlock &words = *m_words;
    const size_t n = words.size();
    std::vector<int> ranks;
    for (int p : positions) {
        if (p >= 0 && size_t(p) < n)
            ranks.push_back(p);
    }
    std::sort(ranks.begin(), ranks.end());
    ranks.erase(std::unique(ranks.begin(), ranks.end()), ranks.end());

    Order order(n);
    std::iota(order.begin(), order.end(), 0u);
    // A total order, so that a draw never depends on the sort.
    const auto less = [&words](quint32 a, quint32 b) { return words.before(a, b); };
    placeRanks(order.begin(), order.end(), 0, ranks.data(), ranks.data() + ranks.size(), less);
    for (size_t i = 0; i < positions.size(); ++i) {
        const int p = positions[i];
        if (p >= 0 && size_t(p) < n)
            result[i] = words.word(order[size_t(p)]);
    }
    return result;
}

std::optional<std::vector<QString>>
TableWords::wordsMadeOf(const QString &characters, const std::function<bool()> &keepGoing)
{
    WordBlock words;
    const QString sql = QStringLiteral("select mot from (") + select() + QStringLiteral(") where ")
        + QString::fromLatin1(queryDialect::madeOfFunction) + QStringLiteral("(mot, ?)");
    bool stopped = false;
    const auto watch = [&]() {
        stopped = stopped || (keepGoing && !keepGoing());
        return !stopped;
    };
    if (!scan(sql, {characters}, words, watch)) {
        if (stopped)
            m_error.clear(); // given up, not failed
        return std::nullopt;
    }
    std::vector<QString> result;
    result.reserve(words.size());
    for (quint32 i : words.recordOrder())
        result.push_back(words.word(i));
    return result;
}

} // namespace kelvora
