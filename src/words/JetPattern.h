#pragma once

#include <QByteArray>
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
    const QByteArray &patternUtf8() const { return m_patternUtf8; }
    bool isValid() const { return m_error.isEmpty(); }
    QString errorString() const { return m_error; } // French, empty when valid

    // Whether the whole text matches; an invalid pattern matches nothing.
    bool matches(QStringView text) const;
    // The same for UTF-8 text, as the database hands it over (no conversion per row).
    bool matchesUtf8(const char *text, qsizetype bytes) const;

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
    bool matches(const char32_t *text, qsizetype size) const;
    bool matchOne(const Item &item, char32_t c) const;
    bool inSet(const CharSet &set, char32_t c) const;

    QString m_pattern;
    QByteArray m_patternUtf8;
    QString m_error;
    std::vector<Item> m_items;
    std::vector<CharSet> m_sets;
};

} // namespace kelvora
