#include "words/FrenchCollation.h"

#include "core/TextUtils.h"
#include "words/CollationKey.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace kelvora::frenchCollation {
namespace {

char32_t asciiLower(char32_t c)
{
    return (c >= 'A' && c <= 'Z') ? c + ('a' - 'A') : c;
}

struct Utf16Text {
    QStringView s;
    qsizetype size() const { return s.size(); }
    char32_t unit(qsizetype i) const { return s[i].unicode(); }
    char32_t forward(qsizetype &i) const { return text::readCodePoint(s, i); }
    char32_t backward(qsizetype &i) const
    {
        const char16_t c = s[--i].unicode();
        if (QChar::isLowSurrogate(c) && i > 0 && QChar::isHighSurrogate(s[i - 1].unicode()))
            return QChar::surrogateToUcs4(s[--i].unicode(), c);
        return c;
    }
};

struct Utf8Text {
    std::string_view s;
    qsizetype size() const { return qsizetype(s.size()); }
    char32_t unit(qsizetype i) const { return static_cast<unsigned char>(s[size_t(i)]); }
    char32_t forward(qsizetype &i) const { return text::readUtf8(s, i); }
    char32_t backward(qsizetype &i) const
    {
        qsizetype start = i - 1;
        while (start > 0 && start > i - 4 && (unit(start) & 0xC0) == 0x80)
            --start;
        qsizetype pos = start;
        const char32_t c = forward(pos);
        if (pos == i) {
            i = start;
            return c;
        }
        --i; // a broken sequence counts byte by byte, as forward() reads it
        return 0xFFFD;
    }
};

// Letters read from the start, marks skipped.
template <class Text>
struct LetterReader {
    const Text &text;
    qsizetype pos = 0;
    char32_t pending = 0;
    bool hasPending = false;

    bool next(char32_t &out)
    {
        if (hasPending) {
            hasPending = false;
            out = pending;
            return true;
        }
        while (pos < text.size()) {
            const CollationKey k = CollationKey::of(text.forward(pos));
            if (k.count == 0)
                continue;
            out = k.letters[0];
            hasPending = k.count == 2;
            pending = k.letters[1];
            return true;
        }
        return false;
    }
};

// Accent weights of the same letters, read from the end (the French rule).
template <class Text>
struct AccentReader {
    const Text &text;
    qsizetype pos;
    int pendingCount = 0;
    quint32 pendingAccent = 0;

    bool next(quint32 &out)
    {
        if (pendingCount > 0) {
            --pendingCount;
            out = pendingAccent;
            return true;
        }
        std::array<quint32, 4> marks{}; // the marks nearest to their letter, last read first
        int markCount = 0;
        while (pos > 0) {
            const CollationKey k = CollationKey::of(text.backward(pos));
            if (k.mark) {
                std::rotate(marks.rbegin(), marks.rbegin() + 1, marks.rend());
                marks[0] = k.accent;
                markCount = std::min(markCount + 1, 4);
                continue;
            }
            quint32 accent = k.accent;
            for (int m = 0; m < markCount; ++m)
                accent = CollationKey::withMark(accent, marks[m]);
            pendingCount = k.count - 1;
            pendingAccent = accent;
            out = accent;
            return true;
        }
        return false;
    }
};

template <class Text>
int compareGeneral(const Text &a, const Text &b)
{
    LetterReader<Text> la{a}, lb{b};
    for (;;) {
        char32_t ca = 0, cb = 0;
        const bool ha = la.next(ca), hb = lb.next(cb);
        if (!ha || !hb) {
            if (ha != hb)
                return ha ? 1 : -1;
            break;
        }
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
    AccentReader<Text> aa{a, a.size()}, ab{b, b.size()};
    for (;;) {
        quint32 wa = 0, wb = 0;
        if (!aa.next(wa) || !ab.next(wb))
            return 0;
        if (wa != wb)
            return wa < wb ? -1 : 1;
    }
}

template <class Text>
int compareText(const Text &a, const Text &b)
{
    // Plain ASCII decides on its own; anything else goes the general way.
    const qsizetype n = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < n; ++i) {
        const char32_t ca = a.unit(i), cb = b.unit(i);
        if ((ca | cb) >= 0x80)
            return compareGeneral(a, b);
        if (ca != cb) {
            const char32_t fa = asciiLower(ca), fb = asciiLower(cb);
            if (fa != fb)
                return fa < fb ? -1 : 1;
        }
    }
    if (a.size() == b.size())
        return 0;
    const Text &longer = a.size() > n ? a : b;
    if (longer.unit(n) >= 0x80) // maybe a mark on the last common letter
        return compareGeneral(a, b);
    return a.size() < b.size() ? -1 : 1;
}

} // namespace

int compare(QStringView a, QStringView b)
{
    return compareText(Utf16Text{a}, Utf16Text{b});
}

int compareUtf8(std::string_view a, std::string_view b)
{
    return compareText(Utf8Text{a}, Utf8Text{b});
}

quint64 primaryPrefixUtf8(std::string_view text)
{
    // Plain ASCII needs no table: its letters are the characters, folded.
    quint64 ascii = 0;
    const size_t n = std::min<size_t>(text.size(), 8);
    bool plain = true;
    for (size_t i = 0; i < n && plain; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        plain = c < 0x7F;
        ascii |= quint64(asciiLower(c) + 1) << (56 - 8 * i);
    }
    // A mark may follow the eighth character and change nothing, but a non-ASCII
    // character inside the first eight needs the general reading.
    if (plain)
        return ascii;
    const Utf8Text utf8{text};
    LetterReader<Utf8Text> reader{utf8};
    quint64 key = 0;
    int shift = 56;
    char32_t letter = 0;
    // A byte per letter, 0 standing for the end of the word: a shorter word sorts first.
    // A letter beyond ASCII takes the highest byte and ends the key, as the bytes after
    // it could not keep the order.
    while (shift >= 0 && reader.next(letter)) {
        const quint64 byte = letter < 0x7F ? letter + 1 : 0xFF;
        key |= byte << shift;
        shift -= 8;
        if (byte == 0xFF)
            break;
    }
    return key;
}

} // namespace kelvora::frenchCollation
