#pragma once

#include <QObject>

class QAbstractButton;
class QTimer;
class QWidget;

namespace kelvora {

// The main window's timers that belong to no exercise. Timer1 (500 ms) blinks the
// settings button "Valider"; Timer2 (100 ms) and every mouse movement over the window
// draw and discard a random number, so that the exercises' draws depend on when and how
// the user works; Timer6 (60 s) would repaint the exercise frame in a random colour and
// is deliberately never started.
class WindowTimers : public QObject {
    Q_OBJECT
public:
    WindowTimers(QAbstractButton *validateButton, QObject *parent = nullptr);

    void start(); // Timer1 and Timer2
    // Mouse movement over these widgets (themselves, not their controls) draws a number.
    void watchMouseMovement(const QList<QWidget *> &surfaces);

    QTimer *timer1() const { return m_timer1; }
    QTimer *timer2() const { return m_timer2; }
    QTimer *timer6() const { return m_timer6; }

    void blinkValidate(); // Timer1's tick
    static void stirRandom();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAbstractButton *m_validate;
    QTimer *m_timer1;
    QTimer *m_timer2;
    QTimer *m_timer6;
};

} // namespace kelvora
