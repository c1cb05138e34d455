#include "exercises/CorrectionStepper.h"

#include <algorithm>

namespace kelvora {

bool CorrectionStepper::start(const QString &text, Selection learner, int delayMs,
                              Selection *caret)
{
    if (text.isEmpty())
        return false;
    m_interval = std::max(0, delayMs);
    m_stopLength = learner.length;
    if (caret)
        *caret = {learner.start, 0};
    return true;
}

CorrectionStepper::Step CorrectionStepper::step(const QString &text, Selection current)
{
    Step s;
    const Selection next{current.start, current.length + 1};
    const qsizetype at = next.start + next.length - 1;
    if (at < 0 || at >= text.size()) {
        // A caret after the last character: nothing left, and nothing is repeated.
        m_interval = 0;
        s.selection = current;
        return s;
    }
    s.played = true;
    s.selection = next;
    s.character = text.mid(at, 1);
    if (next.length == m_stopLength)
        m_interval = 0; // the end of the learner's selection
    // The end of the text; from a later caret too, so that no character is played twice.
    if (next.start + next.length >= text.size())
        m_interval = 0;
    return s;
}

void CorrectionStepper::pause(int delayMs)
{
    m_interval = m_interval == 0 ? std::max(0, delayMs) : 0;
}

CorrectionStepper::Selection CorrectionStepper::stop()
{
    m_interval = 0;
    return {0, 0};
}

} // namespace kelvora
