#pragma once

#include <QString>

namespace kelvora::queryComposer {

// The pieces of a condition on the column mot that the query window's buttons append.

// The condition that matches every word.
inline constexpr char neutral[] = "mot like '*'";

enum class Piece {
    And,          // "ET"
    Or,           // "OU"
    AtLeast,      // "D' au moins " + the number
    AtMost,       // "D' au plus" + the number
    HasLetters,   // each letter of the text, escaped
    LacksLetters,
    HasString,    // the text as it is: its wildcards act and a quote breaks the statement
    LacksString,
    StartsWith,
    EndsWith,
};

// The text a button appends to the condition; `text` is the letters or the string,
// `number` the chosen length.
QString piece(Piece piece, const QString &text, const QString &number = {});

// One letter as a pattern of the dialect matches it literally: ? * # in brackets, a
// quote doubled.
QString escapeLetter(const QString &letter);

// The condition without the connective left at its end ("or " first, then "and ").
QString finished(QString condition);

// The words made only of the progression's characters, of any length from 1 to 26.
QString progressionCondition(const QString &progression);

// "select * from T where C order by mot".
QString recordSource(const QString &table, const QString &condition);

} // namespace kelvora::queryComposer
