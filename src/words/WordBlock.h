#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kelvora {

// Many words read from a table, as the engine's UTF-8 in one block, in the order they
// were read (the table's order when read without "order by").
class WordBlock {
public:
    void append(std::string_view word);
    size_t size() const { return m_spans.size(); }
    bool empty() const { return m_spans.empty(); }
    std::string_view at(size_t i) const
    {
        return {m_bytes.data() + m_spans[i].first, m_spans[i].second};
    }
    QString word(size_t i) const;

    // The record set's order of the words: French and case-insensitive, then the exact
    // text, then the order of reading, so that identical words are always side by side.
    bool before(size_t a, size_t b) const;
    // Every index in that order.
    std::vector<quint32> recordOrder() const;

private:
    std::string m_bytes;
    std::vector<std::pair<size_t, size_t>> m_spans; // offset, size
    std::vector<quint64> m_keys;                    // the first letters, for a quick decision
};

} // namespace kelvora
