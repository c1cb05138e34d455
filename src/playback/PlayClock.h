#pragma once

#include <QElapsedTimer>
#include <QObject>

namespace kelvora {

// The time a silent sound keeps. The steady clock follows the real time; the stepped
// clock stands still until it is advanced, so that a test can run a whole exercise,
// its end and the correction that follows without waiting.
class PlayClock : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    virtual qint64 nowMs() const = 0;

signals:
    // The time jumped forward: whoever waits for a moment should look again now.
    void advanced();
};

class SteadyPlayClock final : public PlayClock {
    Q_OBJECT
public:
    explicit SteadyPlayClock(QObject *parent = nullptr)
        : PlayClock(parent)
    {
        m_timer.start();
    }
    qint64 nowMs() const override { return m_timer.elapsed(); }

private:
    QElapsedTimer m_timer;
};

class SteppedPlayClock final : public PlayClock {
    Q_OBJECT
public:
    using PlayClock::PlayClock;
    qint64 nowMs() const override { return m_now; }
    void advance(qint64 ms)
    {
        m_now += ms;
        emit advanced();
    }

private:
    qint64 m_now = 0;
};

} // namespace kelvora
