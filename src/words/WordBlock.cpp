#include "words/WordBlock.h"

#include "words/FrenchCollation.h"

#include <algorithm>
#include <numeric>

namespace kelvora {

void WordBlock::append(std::string_view word)
{
    m_spans.emplace_back(m_bytes.size(), word.size());
    m_bytes.append(word);
    m_keys.push_back(frenchCollation::primaryPrefixUtf8(word));
}

QString WordBlock::word(size_t i) const
{
    const std::string_view w = at(i);
    return QString::fromUtf8(w.data(), qsizetype(w.size()));
}

bool WordBlock::before(size_t a, size_t b) const
{
    if (m_keys[a] != m_keys[b])
        return m_keys[a] < m_keys[b];
    const std::string_view x = at(a);
    const std::string_view y = at(b);
    const int c = frenchCollation::compareUtf8(x, y);
    if (c != 0)
        return c < 0;
    return x != y ? x < y : a < b;
}

std::vector<quint32> WordBlock::recordOrder() const
{
    std::vector<quint32> order(size());
    std::iota(order.begin(), order.end(), 0u);
    std::sort(order.begin(), order.end(), [this](quint32 a, quint32 b) { return before(a, b); });
    return order;
}

} // namespace kelvora
