#pragma once

#include "morse/SoundRenderer.h"
#include "morse/SoundSettings.h"

#include <QString>

namespace kelvora {

struct AppPaths;
class PatternLookup;

// The text to sound: the exercise box as it stands, and the characters selected in it.
struct SoundText {
    QString text;
    qsizetype selectionStart = 0;  // in characters, 0-based
    qsizetype selectionLength = 0; // 0: the whole text
};

// Where the sound and its text copy go.
struct SoundTarget {
    QString wavPath;
    QString textPath;
    quint64 maxDataBytes = maxWavDataBytes;
    bool refuseLonger = false; // past maxDataBytes, an error rather than a cut sound

    // tmp/test.wav and tmp/test.txt, as the player reads them.
    static SoundTarget exercise(const AppPaths &paths);
    // The same for the window's player, which holds the whole sound in memory: at most
    // three hours (86 MB), anything longer refused before it replaces the last sound.
    static SoundTarget player(const AppPaths &paths);
};

// The one way a text becomes a sound, for the window, the command line, the data
// builder and the benchmarks: the timing from the settings, then `test`. A timing that
// cannot be computed is an error before any file is touched.
RenderResult renderSound(const SoundText &text, const SoundSettings &settings,
                         PatternLookup &lookup, const SoundTarget &target);

} // namespace kelvora
