#include "audio/WavHeader.h"

namespace kelvora {

QByteArray wavHeader(const PcmFormat &format, quint32 dataBytes)
{
    QByteArray h;
    h.reserve(wavHeaderSize);
    const auto put16 = [&h](quint32 v) {
        h.append(char(v & 0xFF));
        h.append(char((v >> 8) & 0xFF));
    };
    const auto put32 = [&put16](quint32 v) {
        put16(v & 0xFFFF);
        put16(v >> 16);
    };
    const auto rate = quint32(format.sampleRate);
    const auto frame = quint32(format.bytesPerFrame());
    h.append("RIFF", 4);
    put32(dataBytes + 36);
    h.append("WAVEfmt ", 8);
    put32(16); // fmt chunk size
    put16(format.sample == PcmSample::Float32 ? 3 : 1); // PCM, or IEEE float
    put16(quint32(format.channels));
    put32(rate);
    put32(rate * frame); // bytes per second
    put16(frame);
    put16(quint32(format.bytesPerSample() * 8));
    h.append("data", 4);
    put32(dataBytes);
    return h;
}

} // namespace kelvora
