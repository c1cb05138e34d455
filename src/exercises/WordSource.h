#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace kelvora {

// Where the word exercises draw from: a record set in its order (the current word table
// with the condition in force, sorted as the window shows it).
class WordSource {
public:
    virtual ~WordSource() = default;

    // The table's name, for messages.
    virtual QString name() const = 0;
    // The number of records; 0 when the set is empty or could not be read (error()).
    virtual int count() = 0;
    // The words at these 0-based positions of the set, in the order asked; a position
    // outside the set gives an empty word.
    virtual std::vector<QString> wordsAt(const std::vector<int> &positions) = 0;
    // The words of the set made only of `characters`, in the set's order; nullopt when
    // `keepGoing` answered false before the search ended (or it failed: error()).
    virtual std::optional<std::vector<QString>>
    wordsMadeOf(const QString &characters, const std::function<bool()> &keepGoing) = 0;
    // Why the last call found nothing: a table that does not exist, a bad condition.
    virtual QString error() const = 0;
};

} // namespace kelvora
