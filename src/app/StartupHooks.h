#pragma once

#include <QStringList>

namespace kelvora {

class MainPF;

// Options of the desktop program for its screenshots and its start-up benchmark:
//   --startup-probe             prints "ready NS" (steady clock, nanoseconds) once the
//                               window is shown with the greeting rendered, then quits
//   --screenshot FILE           saves the window as shown to FILE (PNG), then quits
//   --screenshot-exercise TEXT  before the screenshot: TEXT in the exercise box, prepared
//   --screenshot-play           before the screenshot: the player's Play button pressed
//   --screenshot-settings       before the screenshot: the settings panel opened
namespace startupHooks {
void install(MainPF &window, const QStringList &arguments);
}

} // namespace kelvora
