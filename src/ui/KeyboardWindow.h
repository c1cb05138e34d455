#pragma once

#include "keyboard/KeyQueue.h"

#include <QWidget>

#include <functional>
#include <vector>

class QLabel;
class QTimer;

namespace kelvora {

struct Session;

// "Clavier": one key per row of the reference table; a key typed or clicked sounds its
// Morse through the main window's player. Keys that come while the player is busy wait,
// shown in the first label, and sound together at the next tick after it is free; the
// second label shows what was sent last.
class KeyboardWindow : public QWidget {
    Q_OBJECT
public:
    // Puts the text in the exercise box, prepares and plays it; false when it could not.
    using PlayText = std::function<bool(const QString &)>;

    // `characters`: the reference table's `car` column in its order, a null QString for
    // a row without one.
    KeyboardWindow(const std::vector<QString> &characters, Session &session, PlayText play,
                   QWidget *parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildKeys(const std::vector<QString> &characters);
    void onTick();
    bool sound(const QString &text);
    static void showKeys(QLabel *label, const QString &keys);

    Session &m_session;
    keyboard::KeyQueue m_queue;
    PlayText m_play;
    QLabel *m_waiting = nullptr; // Label1
    QLabel *m_sent = nullptr;    // Label2
    QTimer *m_timer = nullptr;
};

} // namespace kelvora
