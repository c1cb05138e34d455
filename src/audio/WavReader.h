#pragma once

#include "audio/WavSound.h"

#include <QString>

#include <optional>

namespace kelvora {

// Reads a RIFF/WAVE file: PCM 8-bit unsigned or 16-bit signed, mono or stereo, any rate.
// Unknown chunks (LIST...) are skipped, a missing pad byte after an odd-sized chunk is
// tolerated, and a data chunk longer than the file yields what the file holds.
class WavReader {
public:
    // On failure returns nothing and sets *error to a French message naming the file.
    static std::optional<WavSound> read(const QString &fileName, QString *error = nullptr);

    static QString missingFileMessage(const QString &fileName);
    static QString notWavMessage(const QString &fileName);
};

} // namespace kelvora
