#pragma once

#include "MainWindowFixture.h"
#include "app/MainPF.h"

#include <QObject>

#include <memory>

class QAction;

namespace kelvora::testsupport {

// The base of the window tests: a fresh installation root and settings file for each
// test function, the window opened on them, and the gestures of a user.
class WindowTest : public QObject {
    Q_OBJECT
protected:
    std::unique_ptr<MainWindowFixture> fx;
    std::unique_ptr<MainPF> win;

    // Stores `values` in the profile "défaut", then opens the window, shown at a size
    // where every control is on screen.
    void open(const QList<std::pair<QString, QString>> &values = {});
    template <typename T = QWidget> T *w(const QString &name) const
    {
        T *found = win->findChild<T *>(name);
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    void trigger(const QString &action) const;
    void click(const QString &control) const { press(w(control)); }
    // A box's text, a list's current entry, or "1" / "0" for a check box.
    QString valueOf(const QString &control) const;
    // Replaces a box's text as a user pasting it: select all, paste.
    void paste(const QString &control, const QString &text) const;
    // Picks an entry of a list with the arrow keys.
    void choose(const QString &list, int index) const;
    // The entries of a list or of a list box, in order.
    QStringList items(const QString &list) const;
    QString exerciseText() const;
    QString statusText() const;
    static QString banner(const QString &table, int count);

protected slots: // found by name before and after each test function
    void init();
    void cleanup();
};

} // namespace kelvora::testsupport
