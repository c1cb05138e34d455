#pragma once

#include <QString>
#include <QStringView>

#include <string_view>

namespace kelvora::text {

// Only the blank U+0020 is trimmed; tabs and line breaks are characters like any other.
QString trimBlanks(const QString &text);
qsizetype leadingBlanks(QStringView text);

// Characters are Unicode code points: a surrogate pair (an emoji) is one character.
qsizetype characterCount(QStringView text);
// Length in UTF-16 units of the character starting at `utf16Index`.
inline qsizetype characterWidth(QStringView text, qsizetype utf16Index)
{
    return (text[utf16Index].isHighSurrogate() && utf16Index + 1 < text.size()
            && text[utf16Index + 1].isLowSurrogate())
               ? 2
               : 1;
}
// Reads the code point at `i` and moves `i` past it: a surrogate pair is one, a lone
// surrogate its own unit.
inline char32_t readCodePoint(QStringView text, qsizetype &i)
{
    const char16_t c = text[i++].unicode();
    if (QChar::isHighSurrogate(c) && i < text.size() && QChar::isLowSurrogate(text[i].unicode()))
        return QChar::surrogateToUcs4(c, text[i++].unicode());
    return c;
}
// The same over UTF-8 bytes; a malformed sequence reads as U+FFFD, one byte at a time.
char32_t readUtf8(std::string_view text, qsizetype &i);
// Converts between character positions and UTF-16 positions (as a Qt text box counts).
qsizetype utf16ToCharacter(QStringView text, qsizetype utf16Index);
qsizetype characterToUtf16(QStringView text, qsizetype characterIndex);
// The `count` characters starting at character `start` (clamped to the text).
QString characterMid(const QString &text, qsizetype start, qsizetype count);

} // namespace kelvora::text
