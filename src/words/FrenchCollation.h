#pragma once

#include <QStringView>

#include <string_view>

namespace kelvora::frenchCollation {

// Case-insensitive French dictionary order, as the word tables are sorted and compared.
// Letters compare first without accents or case (œ as "oe", ß as "ss"); only when they
// are all equal do accents decide, unaccented first, read from the end of the word
// ("cote" < "côte" < "coté" < "côté"). Strings that differ only in case are equal.
// Returns a negative number, zero or a positive number.
int compare(QStringView a, QStringView b);

// The same order over UTF-8 text, without converting it (the engine's own encoding).
int compareUtf8(std::string_view a, std::string_view b);

// The first eight letters of the first level (no case, no accents) packed into a number
// that sorts as they do: when key(a) < key(b), a sorts before b; equal keys decide
// nothing. Sorting many words by key first leaves few comparisons to compareUtf8().
quint64 primaryPrefixUtf8(std::string_view text);

// True when the two strings are equal in this order.
inline bool equal(QStringView a, QStringView b) { return compare(a, b) == 0; }

} // namespace kelvora::frenchCollation
