#pragma once

#include <QPointer>
#include <QWidget>

namespace kelvora::kvglobal {

// The single-instance windows, created on first use.
inline QPointer<QWidget> mainWindow;
inline QPointer<QWidget> gridWindow;
inline QPointer<QWidget> queryWindow;
inline QPointer<QWidget> keyboardWindow;
inline QPointer<QWidget> aboutWindow;

// Start routine: fixes the installation paths from the program directory, then shows
// the main window. `arguments` are the application's (for --root and --settings).
void Main(const QStringList &arguments);

} // namespace kelvora::kvglobal
