#pragma once

#include <QString>

#include <vector>

namespace kelvora::keyboard {

// Where a key sits in the keyboard window, counted from 1.
struct KeyPlace {
    int index = 0;   // the row of the reference table it stands for, from 0
    QString caption; // its character
    int line = 1;
    int column = 1;
};

struct KeyGrid {
    std::vector<KeyPlace> keys;
    int columns = 0;        // the widest line's keys (at most keysPerLine)
    int waitingLine = 0;    // the label of the keys waiting to sound
    int sentLine = 0;       // the label of the keys sent last
};

inline constexpr int keysPerLine = 14;

// The keys of the reference table's characters, in its order, 14 a line; a row with no
// character (a null QString) has no key but keeps its place. The two labels take the
// two lines after the last one.
KeyGrid layOut(const std::vector<QString> &characters);

} // namespace kelvora::keyboard
