#include "core/TextUtils.h"

namespace kelvora::text {

qsizetype leadingBlanks(QStringView text)
{
    qsizetype n = 0;
    while (n < text.size() && text[n] == u' ')
        ++n;
    return n;
}

QString trimBlanks(const QString &text)
{
    const qsizetype begin = leadingBlanks(text);
    qsizetype end = text.size();
    while (end > begin && text[end - 1] == u' ')
        --end;
    if (begin == 0 && end == text.size())
        return text;
    return text.mid(begin, end - begin);
}

char32_t readUtf8(std::string_view text, qsizetype &i)
{
    const auto byte = [&text](qsizetype k) { return static_cast<unsigned char>(text[size_t(k)]); };
    const unsigned lead = byte(i++);
    if (lead < 0x80)
        return lead;
    const int extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
    if (extra < 0 || i + extra > qsizetype(text.size()))
        return 0xFFFD;
    char32_t c = lead & (0x3F >> extra);
    for (int k = 0; k < extra; ++k) {
        const unsigned next = byte(i + k);
        if ((next & 0xC0) != 0x80)
            return 0xFFFD;
        c = (c << 6) | (next & 0x3F);
    }
    i += extra;
    return c;
}

qsizetype characterCount(QStringView text)
{
    qsizetype count = 0;
    for (qsizetype i = 0; i < text.size(); i += characterWidth(text, i))
        ++count;
    return count;
}

qsizetype utf16ToCharacter(QStringView text, qsizetype utf16Index)
{
    qsizetype count = 0;
    qsizetype i = 0;
    while (i < text.size() && i < utf16Index) {
        i += characterWidth(text, i);
        ++count;
    }
    return count;
}

qsizetype characterToUtf16(QStringView text, qsizetype characterIndex)
{
    qsizetype i = 0;
    for (qsizetype n = 0; n < characterIndex && i < text.size(); ++n)
        i += characterWidth(text, i);
    return i;
}

QString characterMid(const QString &text, qsizetype start, qsizetype count)
{
    if (start < 0)
        start = 0;
    if (count <= 0)
        return {};
    const qsizetype begin = characterToUtf16(text, start);
    const qsizetype end = begin + characterToUtf16(QStringView(text).mid(begin), count);
    return text.mid(begin, end - begin);
}

} // namespace kelvora::text
