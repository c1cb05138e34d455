#pragma once

#include <QString>

namespace kelvora::textTools {

// The tools of the "Outils" menu besides acc. They count Unicode code points, so an
// emoji is one character.

// Five-character groups, each followed by a blank. Blanks are removed first the way the
// program always did it: in a run of n blanks, n / 2 survive (line ends are kept). The
// last 1 to 5 characters never make a group: "ABCDEFGHIJKL" gives "ABCDE FGHIJ ".
QString fiveCharacterGroups(const QString &text);

// The text without its outer blanks, read backwards ("abc" -> "cba"); a CR LF pair
// stays CR LF.
QString reversed(const QString &text);

// The text without its outer blanks, each character followed by one blank
// ("a b" -> "a   b ").
QString spacedOut(const QString &text);

} // namespace kelvora::textTools
