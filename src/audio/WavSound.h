#pragma once

#include "audio/PcmFormat.h"

#include <QByteArray>

namespace kelvora {

// A WAV file's samples, held in memory so that the file itself is never kept open.
struct WavSound {
    PcmFormat format;
    QByteArray pcm;         // whole frames only
    bool truncated = false; // the data chunk announced more than the file holds

    qint64 lengthMs() const { return format.msForBytes(pcm.size()); }
};

} // namespace kelvora
