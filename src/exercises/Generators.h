#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace kelvora {
class WordSource;
}

namespace kelvora::exercises {

// The exercises of the "Exercices" menu, in the command line's names.
enum class Kind {
    Letters,          // "Lettres"
    Digits,           // "Chiffres"
    Punctuation,      // "Ponctuations"
    Mixed,            // "Mélangés"
    Exam,             // "Examen (30+6)"
    ProgressionWords, // "Avec caractères de la progression"
    Words,            // "Tous"
    WordsPlain,       // "Sans accents"
    CallSigns,        // "Indicatifs"
    MockExam,         // "Examen Blanc"
};
std::optional<Kind> kindNamed(const QString &name);
QString kindName(Kind kind);

// What every generator reads, as the boxes hold it.
struct Options {
    QString groupCount = QStringLiteral("36"); // nbgroup (already clamped by its box)
    QString shortest = QStringLiteral("5");    // GRMIN
    QString longest = QStringLiteral("5");     // GRMAX
    QString progression;                       // PROGRESS
    QString reinforcement;                     // renfor (already trimmed by its box)
};

struct Result {
    QString text;         // the exercise text as the box holds it afterwards
    bool abandoned = false; // the progression search gave up (abandonMessage)
    QString notice;       // for the status bar: a table without words, a failed condition
};

inline constexpr char abandonMessage[] =
    "Pas assez de lettes dans la barre de progréssion, Fonction abandonnée ajoutez des "
    "lettres et recommencez";

// What the status bar says when a word exercise or drill finds no word in `table`.
QString emptyTableNotice(const QString &table);

// The start rule: replace the text, or append one blank to it when `append` ("ajout").
void start(QString &text, bool append);
// How many items nbgroup's text asks for: its leading number, whole, 0 .. 102.
int itemCount(const QString &groupCountText);

// Writes one exercise, every draw from the program's one random source, in a fixed
// order. `present` is the exercise text before, `append` the "ajout" check mark.
// `words` is the record set of the word exercises (the current table with its condition;
// for the mock examination, the table "mot"); it may be null for the others.
// `keepSearching` is asked now and then while the progression's words are searched;
// false abandons the search.
Result generate(Kind kind, const QString &present, bool append, const Options &options,
                WordSource *words = nullptr, const std::function<bool()> &keepSearching = {});

} // namespace kelvora::exercises
