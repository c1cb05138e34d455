#include "keyboard/KeyGrid.h"

#include <algorithm>

namespace kelvora::keyboard {

KeyGrid layOut(const std::vector<QString> &characters)
{
    KeyGrid grid;
    int line = 1;
    int column = 0;
    for (std::size_t k = 0; k < characters.size(); ++k) {
        if (++column == keysPerLine + 1) {
            column = 1;
            ++line;
        }
        grid.columns = std::max(grid.columns, column);
        if (!characters[k].isNull())
            grid.keys.push_back({int(k), characters[k], line, column});
    }
    grid.waitingLine = line + 1;
    grid.sentLine = line + 2;
    return grid;
}

} // namespace kelvora::keyboard
