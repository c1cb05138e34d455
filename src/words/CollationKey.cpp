#include "words/CollationKey.h"

#include <QChar>
#include <QList>
#include <QString>

#include <memory>

namespace kelvora {
namespace {

// The French accents in the usual dictionary order, then every other mark by its code.
constexpr quint32 ligatureRank = 0xF0;
constexpr quint32 strokeRank = 0xF1;

quint32 markRank(char32_t c)
{
    switch (c) {
    case 0x301: return 1; // acute
    case 0x300: return 2; // grave
    case 0x302: return 3; // circumflex
    case 0x308: return 4; // diaeresis
    case 0x327: return 5; // cedilla
    case 0x303: return 6; // tilde
    case 0x30A: return 7; // ring
    case 0x30C: return 8; // caron
    default: break;
    }
    if (c >= 0x300 && c < 0x370)
        return 0x10 + (c - 0x300);
    return 0x80 + (c & 0x6F);
}

bool isMark(char32_t c)
{
    const auto cat = QChar::category(c);
    return cat == QChar::Mark_NonSpacing || cat == QChar::Mark_SpacingCombining
        || cat == QChar::Mark_Enclosing;
}

CollationKey letters(char32_t first, char32_t second, quint32 accent)
{
    CollationKey k;
    k.letters = {first, second};
    k.count = second ? 2 : 1;
    k.accent = accent;
    return k;
}

CollationKey computeKey(char32_t c)
{
    if (isMark(c)) {
        CollationKey k;
        k.mark = true;
        k.accent = markRank(c);
        return k;
    }
    switch (c) { // letters with no canonical decomposition
    case 0xDF: case 0x1E9E: return letters('s', 's', ligatureRank);
    case 0xE6: case 0xC6: return letters('a', 'e', ligatureRank);
    case 0x153: case 0x152: return letters('o', 'e', ligatureRank);
    case 0xF8: case 0xD8: return letters('o', 0, strokeRank);
    case 0x111: case 0x110: return letters('d', 0, strokeRank);
    case 0x142: case 0x141: return letters('l', 0, strokeRank);
    default: break;
    }
    if (QChar::decompositionTag(c) == QChar::Canonical) {
        const QList<uint> parts =
            QString::fromUcs4(&c, 1).normalized(QString::NormalizationForm_D).toUcs4();
        std::array<char32_t, 2> bases{};
        int baseCount = 0;
        quint32 accent = 0;
        for (const uint p : parts) {
            if (isMark(p))
                accent = CollationKey::withMark(accent, markRank(p));
            else if (baseCount < 2)
                bases[baseCount++] = QChar::toCaseFolded(char32_t(p));
            else
                baseCount = 3;
        }
        if (baseCount == 1 || baseCount == 2)
            return letters(bases[0], baseCount == 2 ? bases[1] : 0, accent);
    }
    return letters(QChar::toCaseFolded(c), 0, 0);
}

// Latin, Greek, Cyrillic and Latin Extended Additional come from a table built once,
// so comparing never allocates for them.
constexpr char32_t tableSize = 0x2000;

} // namespace

CollationKey CollationKey::of(char32_t c)
{
    static const auto table = [] {
        auto t = std::make_unique<std::array<CollationKey, tableSize>>();
        for (char32_t i = 0; i < tableSize; ++i)
            (*t)[i] = computeKey(i);
        return t;
    }();
    return c < tableSize ? (*table)[c] : computeKey(c);
}

// Up to four marks per letter, first mark in the highest byte.
quint32 CollationKey::withMark(quint32 accent, quint32 markAccent)
{
    return accent < (1u << 24) ? (accent << 8) | markAccent : accent;
}

} // namespace kelvora
