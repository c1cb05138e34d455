#pragma once

#include "playback/PcmOutput.h"

#include <QElapsedTimer>

namespace kelvora {

// The null output: no sound, but time runs as if the sound were playing, so that
// everything waiting for the end of a sound still happens.
class ClockPcmOutput final : public PcmOutput {
    Q_OBJECT
public:
    using PcmOutput::PcmOutput;

    bool prepare(const WavSound &) override { return true; }
    bool start(qint64 fromMs) override;
    void suspend() override;
    void resume() override;
    void halt() override;
    qint64 playedMs() const override;

private:
    QElapsedTimer m_clock; // valid while running
    qint64 m_banked = 0;   // played before the last pause
};

} // namespace kelvora
