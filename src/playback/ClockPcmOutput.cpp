#include "playback/ClockPcmOutput.h"

namespace kelvora {

bool ClockPcmOutput::start(qint64)
{
    m_banked = 0;
    m_clock.start();
    return true;
}

void ClockPcmOutput::suspend()
{
    if (!m_clock.isValid())
        return;
    m_banked += m_clock.elapsed();
    m_clock.invalidate();
}

void ClockPcmOutput::resume()
{
    if (!m_clock.isValid())
        m_clock.start();
}

void ClockPcmOutput::halt()
{
    suspend();
}

qint64 ClockPcmOutput::playedMs() const
{
    return m_banked + (m_clock.isValid() ? m_clock.elapsed() : 0);
}

} // namespace kelvora
