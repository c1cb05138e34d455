#pragma once

#include <QString>

namespace kelvora::queryDialect {

// Names the translated SQL relies on; they are registered on every connection.
inline constexpr char collationName[] = "KVFR";
inline constexpr char leftFunction[] = "jet_left";   // "left(" is a syntax error in SQLite
inline constexpr char rightFunction[] = "jet_right";
// madeof(word, characters): every character of the word is one of `characters`.
inline constexpr char madeOfFunction[] = "madeof";

// Rewrites one text of the program's query dialect (Access/Jet style) as SQLite:
// "text" -> 'text', [name] -> "name", left( / right( -> jet_left( / jet_right(,
// and COLLATE KVFR after a string literal or placeholder compared with = <> != < > <= >=
// and after each plain column of an ORDER BY list, so that text compares and sorts
// case-insensitively in French order. Text inside literals and comments is never
// rewritten; everything else passes through unchanged.
QString translate(const QString &programSql);

} // namespace kelvora::queryDialect
