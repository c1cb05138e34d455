#pragma once

#include "app/AppPaths.h"

#include <QString>

namespace kelvora {

// The process-wide state every window shares (the window instances live in kvglobal).
struct GlobalState {
    AppPaths paths;
    QString currentTable = QStringLiteral("mot");
    QString currentUser;
    bool playerFree = true;   // no sound is playing, a new one may start
    QString keyboardQueue;    // keys typed in the keyboard window, not yet sounded
};

GlobalState &globalState();

} // namespace kelvora
