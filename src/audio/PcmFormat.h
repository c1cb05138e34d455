#pragma once

#include <QtGlobal>

namespace kelvora {

enum class PcmSample { UInt8, Int16, Float32 };

// The layout of interleaved PCM samples, as a file holds them or an output accepts them.
struct PcmFormat {
    int sampleRate = 0;
    int channels = 0;
    PcmSample sample = PcmSample::UInt8;

    int bytesPerSample() const
    {
        return sample == PcmSample::UInt8 ? 1 : sample == PcmSample::Int16 ? 2 : 4;
    }
    int bytesPerFrame() const { return bytesPerSample() * channels; }
    bool isValid() const { return sampleRate > 0 && channels > 0; }
    // Whole milliseconds: a partial millisecond at the end is not counted.
    qint64 msForBytes(qint64 bytes) const
    {
        return isValid() ? bytes / bytesPerFrame() * 1000 / sampleRate : 0;
    }
    // Rounded down to a whole frame so that playback never starts inside a frame.
    qint64 bytesForMs(qint64 ms) const
    {
        return isValid() ? ms * sampleRate / 1000 * bytesPerFrame() : 0;
    }
    bool operator==(const PcmFormat &) const = default;
};

} // namespace kelvora
