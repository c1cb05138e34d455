#include "core/Windows1252.h"

#include <QList>

#include <array>

namespace kelvora::windows1252 {

namespace {

// Bytes 0x80..0x9F; the others map to the same code point (Latin-1).
constexpr std::array<char16_t, 32> high = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

int byteFor(char32_t cp)
{
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF))
        return int(cp);
    for (int i = 0; i < int(high.size()); ++i) {
        if (high[i] == cp)
            return 0x80 + i;
    }
    return -1;
}

// The character of one byte.
char16_t charOf(unsigned char b)
{
    return b >= 0x80 && b < 0xA0 ? high[b - 0x80] : char16_t(b);
}

} // namespace

bool canEncode(char32_t codePoint)
{
    return byteFor(codePoint) >= 0;
}

QByteArray encode(const QString &text)
{
    QByteArray out;
    out.reserve(text.size());
    for (const char32_t cp : text.toUcs4()) {
        const int b = byteFor(cp);
        out.append(b >= 0 ? char(b) : '?');
    }
    return out;
}

QString decode(const QByteArray &bytes)
{
    QString out(bytes.size(), Qt::Uninitialized);
    QChar *o = out.data();
    for (const char c : bytes) {
        *o++ = QChar(charOf(static_cast<unsigned char>(c)));
    }
    return out;
}

QString decodeJoiningLines(const QByteArray &bytes)
{
    QString out(bytes.size(), Qt::Uninitialized);
    QChar *const begin = out.data();
    QChar *o = begin;
    for (const char c : bytes) {
        *o = QChar(charOf(static_cast<unsigned char>(c)));
        o += (c != '\n' && c != '\r'); // written, then kept or overwritten: no branch
    }
    out.truncate(o - begin);
    return out;
}

} // namespace kelvora::windows1252
