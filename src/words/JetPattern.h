#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace kelvora {

// A pattern of the program's "like": * any run of characters (also none), ? one
// character, # one digit, [abc] one of a set, [a-z] a range (in dictionary order),
// [!abc] one character outside the set; [*] [?] [#] [[] match the wildcard itself.
// Matching ignores case but not accents and counts code points, not UTF-16 units.
class JetPattern {
public:
    explicit JetPattern(QStringView pattern);

    const QString &pattern() const { return m_pattern; }
    bool isValid() const { return m_error.isEmpty(); }
    QString errorString() const { return m_error; } // French, empty when valid

    // Whether the whole text matches; an invalid pattern matches nothing.
    bool matches(QStringView text) const;

private:
    enum class Kind { Literal, AnyChar, Digit, Set, Star };
    struct Range {
        QString low;
        QString high;
    };
    struct CharSet {
        bool negated = false;
        std::vector<char32_t> chars; // case-folded
        std::vector<Range> ranges;
    };
    struct Item {
        Kind kind;
        char32_t ch = 0; // case-folded, for Literal
        int set = -1;    // index in m_sets, for Set
    };

    bool parseSet(QStringView pattern, qsizetype &pos);
    bool matchOne(const Item &item, QStringView text, qsizetype pos, qsizetype &next) const;
    bool inSet(const CharSet &set, QStringView ch, char32_t folded) const;

    QString m_pattern;
    QString m_error;
    std::vector<Item> m_items;
    std::vector<CharSet> m_sets;
};

} // namespace kelvora
