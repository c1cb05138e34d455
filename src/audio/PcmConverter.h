#pragma once

#include "audio/PcmFormat.h"

#include <QByteArray>

namespace kelvora {

// Converts interleaved PCM between sample types, channel counts (mono <-> stereo by
// copy or average) and rates (linear interpolation: enough for Morse tones and noise),
// for an output that does not take the file's own format.
class PcmConverter {
public:
    static QByteArray convert(const QByteArray &pcm, const PcmFormat &from, const PcmFormat &to);
};

} // namespace kelvora
