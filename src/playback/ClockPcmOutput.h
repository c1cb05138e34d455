#pragma once

#include "playback/PcmOutput.h"

namespace kelvora {

class PlayClock;

// The null output: no sound, but time runs as if the sound were playing, so that
// everything waiting for the end of a sound still happens.
class ClockPcmOutput final : public PcmOutput {
    Q_OBJECT
public:
    ClockPcmOutput(const PlayClock &clock, QObject *parent = nullptr);

    bool prepare(const WavSound &) override { return true; }
    bool start(qint64 fromMs) override;
    void suspend() override;
    void resume() override;
    void halt() override;
    qint64 playedMs() const override;

private:
    const PlayClock &m_clock;
    bool m_running = false;
    qint64 m_startedAt = 0; // the clock's time when it last ran on
    qint64 m_banked = 0;    // played before the last pause
};

} // namespace kelvora
