#pragma once

#include "audio/PcmFormat.h"

#include <QByteArray>

namespace kelvora {

inline constexpr int wavHeaderSize = 44;

// The 44-byte header of a PCM WAV file holding `dataBytes` bytes of samples in `format`
// (the one writer of WAV headers: the exercise sound, the character sounds, the noises).
QByteArray wavHeader(const PcmFormat &format, quint32 dataBytes);

} // namespace kelvora
