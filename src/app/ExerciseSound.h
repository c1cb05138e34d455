#pragma once

#include "morse/SoundRenderer.h"
#include "morse/SoundSettings.h"

class QPlainTextEdit;

namespace kelvora {

class PatternLookup;

// test, as the main window runs it: renders the exercise text (its selection only, when
// there is one) into tmp/test.wav and tmp/test.txt, then writes the trimmed text back
// into the box with the same characters still selected.
class ExerciseSound {
public:
    explicit ExerciseSound(PatternLookup &lookup);

    RenderResult test(QPlainTextEdit &exercise, const SoundSettings &settings,
                      const TimingPlan &plan);

private:
    PatternLookup &m_lookup;
};

} // namespace kelvora
