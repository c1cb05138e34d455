#include "words/JetPattern.h"

#include "core/TextUtils.h"
#include "words/FrenchCollation.h"

#include <QChar>
#include <QVarLengthArray>

#include <algorithm>
#include <optional>

namespace kelvora {
namespace {

char32_t fold(char32_t c)
{
    if (c < 0x80) // most letters of a word list: no table lookup
        return c >= 'A' && c <= 'Z' ? c + 32 : c;
    return QChar::toCaseFolded(c);
}

// The code points of a text, on the stack for any ordinary word.
using CodePoints = QVarLengthArray<char32_t, 128>;

} // namespace

JetPattern::JetPattern(QStringView pattern)
    : m_pattern(pattern.toString())
    , m_patternUtf8(m_pattern.toUtf8())
{
    qsizetype i = 0;
    while (i < pattern.size()) {
        const char32_t c = kelvora::text::readCodePoint(pattern, i);
        switch (c) {
        case '*':
            if (m_items.empty() || m_items.back().kind != Kind::Star) // "**" is "*"
                m_items.push_back({Kind::Star});
            break;
        case '?':
            m_items.push_back({Kind::AnyChar});
            break;
        case '#':
            m_items.push_back({Kind::Digit});
            break;
        case '[':
            if (!parseSet(pattern, i)) {
                m_items.clear();
                m_sets.clear();
                return;
            }
            break;
        default:
            m_items.push_back({Kind::Literal, fold(c)});
            break;
        }
    }
}

// Reads the group after its "[" up to its "]"; "[]" stands for nothing at all.
bool JetPattern::parseSet(QStringView pattern, qsizetype &pos)
{
    const qsizetype close = pattern.indexOf(u']', pos);
    if (close < 0) {
        m_error = QStringLiteral("Motif \"%1\" incorrect : un \"[\" n'est pas refermé par \"]\".")
                      .arg(m_pattern);
        return false;
    }
    QStringView body = pattern.mid(pos, close - pos);
    pos = close + 1;
    if (body.isEmpty())
        return true;

    CharSet set;
    if (body.startsWith(u'!')) {
        set.negated = true;
        body = body.mid(1);
    }
    std::vector<QStringView> chars;
    for (qsizetype i = 0; i < body.size();) {
        const qsizetype start = i;
        kelvora::text::readCodePoint(body, i);
        chars.push_back(body.mid(start, i - start));
    }
    for (size_t k = 0; k < chars.size(); ++k) {
        if (k + 2 < chars.size() && chars[k + 1] == u"-") {
            if (frenchCollation::compare(chars[k], chars[k + 2]) > 0) {
                m_error = QStringLiteral("Motif \"%1\" incorrect : l'intervalle [%2-%3] est inversé.")
                              .arg(m_pattern, chars[k].toString(), chars[k + 2].toString());
                return false;
            }
            set.ranges.push_back({chars[k].toString(), chars[k + 2].toString()});
            k += 2;
        } else {
            qsizetype i = 0;
            set.chars.push_back(fold(kelvora::text::readCodePoint(chars[k], i)));
        }
    }
    m_sets.push_back(std::move(set));
    m_items.push_back({Kind::Set, 0, int(m_sets.size() - 1)});
    return true;
}

bool JetPattern::inSet(const CharSet &set, char32_t c) const
{
    const char32_t folded = fold(c);
    bool found = std::find(set.chars.begin(), set.chars.end(), folded) != set.chars.end();
    if (!found && !set.ranges.empty()) {
        const QString ch = QString::fromUcs4(&c, 1);
        for (size_t r = 0; !found && r < set.ranges.size(); ++r) {
            found = frenchCollation::compare(ch, set.ranges[r].low) >= 0
                && frenchCollation::compare(ch, set.ranges[r].high) <= 0;
        }
    }
    return found != set.negated;
}

bool JetPattern::matchOne(const Item &item, char32_t c) const
{
    switch (item.kind) {
    case Kind::Literal: return fold(c) == item.ch;
    case Kind::AnyChar: return true;
    case Kind::Digit: return c >= '0' && c <= '9';
    case Kind::Set: return inSet(m_sets[size_t(item.set)], c);
    case Kind::Star: break;
    }
    return false;
}

bool JetPattern::matches(QStringView text) const
{
    CodePoints points;
    for (qsizetype i = 0; i < text.size();)
        points.append(kelvora::text::readCodePoint(text, i));
    return matches(points.constData(), points.size());
}

bool JetPattern::matchesUtf8(const char *text, qsizetype bytes) const
{
    CodePoints points;
    const std::string_view utf8(text, size_t(bytes));
    for (qsizetype i = 0; i < bytes;)
        points.append(kelvora::text::readUtf8(utf8, i));
    return matches(points.constData(), points.size());
}

// Every item but "*" takes exactly one character, so the classic two-pointer walk that
// goes back to the last "*" on a mismatch is enough (no exponential backtracking).
bool JetPattern::matches(const char32_t *text, qsizetype size) const
{
    if (!isValid())
        return false;
    size_t p = 0;
    qsizetype t = 0;
    std::optional<size_t> star;
    qsizetype starText = 0;
    while (t < size) {
        if (p < m_items.size()) {
            const Item &item = m_items[p];
            if (item.kind == Kind::Star) {
                star = p++;
                starText = t;
                continue;
            }
            if (matchOne(item, text[t])) {
                ++p;
                ++t;
                continue;
            }
        }
        if (!star)
            return false;
        p = *star + 1;
        t = ++starText;
    }
    while (p < m_items.size() && m_items[p].kind == Kind::Star)
        ++p;
    return p == m_items.size();
}

} // namespace kelvora
