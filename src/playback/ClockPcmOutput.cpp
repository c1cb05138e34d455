#include "playback/ClockPcmOutput.h"

#include "playback/PlayClock.h"

namespace kelvora {

ClockPcmOutput::ClockPcmOutput(const PlayClock &clock, QObject *parent)
    : PcmOutput(parent)
    , m_clock(clock)
{
}

bool ClockPcmOutput::start(qint64)
{
    m_banked = 0;
    m_running = true;
    m_startedAt = m_clock.nowMs();
    return true;
}

void ClockPcmOutput::suspend()
{
    if (!m_running)
        return;
    m_banked += m_clock.nowMs() - m_startedAt;
    m_running = false;
}

void ClockPcmOutput::resume()
{
    if (m_running)
        return;
    m_running = true;
    m_startedAt = m_clock.nowMs();
}

void ClockPcmOutput::halt()
{
    suspend();
}

qint64 ClockPcmOutput::playedMs() const
{
    return m_banked + (m_running ? m_clock.nowMs() - m_startedAt : 0);
}

} // namespace kelvora
