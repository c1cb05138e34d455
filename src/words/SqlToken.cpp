#include "words/SqlToken.h"

namespace kelvora {
namespace {

bool isSpace(char16_t c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

bool isDigit(char16_t c)
{
    return c >= '0' && c <= '9';
}

bool isWordStart(char16_t c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80;
}

bool isWordChar(char16_t c)
{
    return isWordStart(c) || isDigit(c) || c == '$';
}

// Position after a quoted piece opened at `open`, where a doubled quote stands for one;
// -1 when the closing quote is missing.
qsizetype endOfQuoted(QStringView s, qsizetype open)
{
    const QChar quote = s[open];
    for (qsizetype i = s.indexOf(quote, open + 1); i >= 0; i = s.indexOf(quote, i + 2)) {
        if (i + 1 >= s.size() || s[i + 1] != quote)
            return i + 1;
    }
    return -1;
}

qsizetype operatorLength(QStringView s, qsizetype i)
{
    static constexpr QStringView twoChars[] = {u"<=", u">=", u"<>", u"!=", u"==", u"||", u"<<", u">>"};
    for (QStringView op : twoChars) {
        if (s.sliced(i).startsWith(op))
            return 2;
    }
    return 1;
}

} // namespace

bool SqlToken::isWord(QStringView sql, QStringView word) const
{
    return kind == Kind::Word && text(sql).compare(word, Qt::CaseInsensitive) == 0;
}

bool SqlToken::isPunct(QStringView sql, char16_t c) const
{
    return kind == Kind::Punct && sql[begin] == QChar(c);
}

std::vector<SqlToken> SqlToken::tokenize(QStringView s)
{
    std::vector<SqlToken> tokens;
    const qsizetype n = s.size();
    auto at = [&](qsizetype k) -> char16_t { return k < n ? s[k].unicode() : 0; };
    qsizetype i = 0;
    while (i < n) {
        const qsizetype start = i;
        const char16_t c = at(i);
        Kind kind = Kind::Other;
        if (isSpace(c)) {
            while (i < n && isSpace(at(i)))
                ++i;
            kind = Kind::Space;
        } else if (c == '-' && at(i + 1) == '-') {
            while (i < n && at(i) != '\n')
                ++i;
            kind = Kind::Comment;
        } else if (c == '/' && at(i + 1) == '*') {
            const qsizetype close = s.indexOf(u"*/", i + 2);
            i = close < 0 ? n : close + 2;
            kind = Kind::Comment;
        } else if (c == '\'' || c == '"' || c == '`') {
            const qsizetype end = endOfQuoted(s, i);
            i = end < 0 ? n : end;
            if (end >= 0)
                kind = c == '\'' ? Kind::SingleString : c == '"' ? Kind::DoubleString : Kind::Backtick;
        } else if (c == '[') {
            const qsizetype close = s.indexOf(u']', i + 1);
            i = close < 0 ? n : close + 1;
            kind = close < 0 ? Kind::Other : Kind::Bracketed;
        } else if (isDigit(c) || (c == '.' && isDigit(at(i + 1)))) {
            ++i;
            while (i < n && (isWordChar(at(i)) || at(i) == '.'
                             || ((at(i) == '+' || at(i) == '-') && (at(i - 1) == 'e' || at(i - 1) == 'E'))))
                ++i;
            kind = Kind::Number;
        } else if (isWordStart(c)) {
            while (i < n && isWordChar(at(i)))
                ++i;
            kind = Kind::Word;
        } else if (c == '?') {
            ++i;
            while (i < n && isDigit(at(i)))
                ++i;
            kind = Kind::Param;
        } else if ((c == ':' || c == '@' || c == '$') && isWordChar(at(i + 1))) {
            ++i;
            while (i < n && isWordChar(at(i)))
                ++i;
            kind = Kind::Param;
        } else if (c == '(' || c == ')' || c == ',' || c == ';' || c == '.') {
            ++i;
            kind = Kind::Punct;
        } else {
            i += operatorLength(s, i);
            kind = Kind::Operator;
        }
        tokens.push_back({kind, start, i});
    }
    return tokens;
}

} // namespace kelvora
