#pragma once

namespace kelvora {

// What follows the end of an exercise, by the automatic correction (Fcorrection) and the
// word loop (motenboucle). The correction wins over the loop; the noise runs on into
// whatever follows and stops only when nothing does.
struct EndOfPlay {
    bool startCorrection = false;
    bool enableWordTimer = false; // Timer4: the loop's next word after its pause
    bool stopNoise = false;

    static EndOfPlay after(bool autoCorrection, bool wordLoop)
    {
        if (autoCorrection)
            return {true, false, false};
        if (wordLoop)
            return {false, true, false};
        return {false, false, true};
    }
};

} // namespace kelvora
