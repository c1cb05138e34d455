#pragma once

#include <QtGlobal>

#include <array>

namespace kelvora {

// What one code point weighs in the French dictionary order: 0, 1 or 2 letters, case
// folded and without accents (œ gives o, e), and an accent weight (0 = none, sorts
// first). A combining mark gives no letter; its weight adds to the letter before it.
struct CollationKey {
    std::array<char32_t, 2> letters{};
    quint8 count = 0;
    bool mark = false;
    quint32 accent = 0;

    static CollationKey of(char32_t c);
    // The accent of a letter followed by one more combining mark.
    static quint32 withMark(quint32 accent, quint32 markAccent);
};

} // namespace kelvora
