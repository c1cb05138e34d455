#pragma once

#include "settings/AppPaths.h"

#include <QString>

namespace kelvora {

// What the windows of one running program share: where the installation is, who is
// using it, the current word table, whether the player is free, and the keys typed on
// the keyboard that have not sounded yet. Made once at start and handed to whoever
// needs it.
struct Session {
    AppPaths paths;
    QString currentTable = QStringLiteral("mot");
    QString currentUser;
    bool playerFree = true;   // no sound is playing, a new one may start
    QString keyboardQueue;    // keys typed in the keyboard window, not yet sounded
};

} // namespace kelvora
