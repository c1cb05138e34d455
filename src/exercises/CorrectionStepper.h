#pragma once

#include <QString>

namespace kelvora {

// The correction replay's progress is the exercise box's own selection: it starts at the
// learner's caret and grows by one character per step, the last selected character being
// the one heard. This holds the rest: the delay between characters (0 while no correction
// runs, as the stepping timer's interval) and the stop length (the learner's selection).
class CorrectionStepper {
public:
    struct Selection {
        qsizetype start = 0;
        qsizetype length = 0;
        bool operator==(const Selection &) const = default;
    };

    struct Step {
        bool played = false; // false: no character was left, nothing sounds
        Selection selection; // the box's selection after the step
        QString character;   // the last selected character
    };

    // cjouer: false for an empty text (nothing starts). Otherwise the correction runs at
    // `delayMs`, the learner's selection length becomes the stop length and the returned
    // selection is the caret at the learner's selection start.
    bool start(const QString &text, Selection learner, int delayMs, Selection *caret);
    // One tick of the stepping timer.
    Step step(const QString &text, Selection current);
    // cpause: a still stepper resumes at `delayMs`, a running one pauses.
    void pause(int delayMs);
    // cstop: still, and the caret goes back to the start of the text.
    Selection stop();

    int interval() const { return m_interval; }
    bool isRunning() const { return m_interval != 0; }
    qsizetype stopLength() const { return m_stopLength; }

private:
    int m_interval = 0;
    qsizetype m_stopLength = 0;
};

} // namespace kelvora
