#include "audio/PcmConverter.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace kelvora {

namespace {

float sampleAt(const char *p, PcmSample type)
{
    switch (type) {
    case PcmSample::UInt8:
        return (float(static_cast<unsigned char>(*p)) - 128.0f) / 128.0f;
    case PcmSample::Int16:
        return float(qFromLittleEndian<qint16>(p)) / 32768.0f;
    case PcmSample::Float32: {
        float f;
        std::memcpy(&f, p, sizeof f);
        return f;
    }
    }
    return 0.0f;
}

void putSample(char *p, PcmSample type, float v)
{
    v = std::clamp(v, -1.0f, 1.0f);
    switch (type) {
    case PcmSample::UInt8:
        *p = char(std::clamp(int(std::lround(v * 128.0f)) + 128, 0, 255));
        return;
    case PcmSample::Int16:
        qToLittleEndian<qint16>(qint16(std::clamp(int(std::lround(v * 32768.0f)), -32768, 32767)),
                                p);
        return;
    case PcmSample::Float32:
        std::memcpy(p, &v, sizeof v);
        return;
    }
}

} // namespace

QByteArray PcmConverter::convert(const QByteArray &pcm, const PcmFormat &from, const PcmFormat &to)
{
    if (from == to || !from.isValid() || !to.isValid())
        return pcm;

    // Decode to float frames with the target's channel count.
    const qsizetype inFrames = pcm.size() / from.bytesPerFrame();
    std::vector<float> frames(size_t(inFrames) * size_t(to.channels));
    const char *in = pcm.constData();
    for (qsizetype f = 0; f < inFrames; ++f) {
        const char *frame = in + f * from.bytesPerFrame();
        float mono = 0.0f;
        for (int c = 0; c < from.channels; ++c)
            mono += sampleAt(frame + c * from.bytesPerSample(), from.sample);
        mono /= float(from.channels);
        for (int c = 0; c < to.channels; ++c) {
            const float v = from.channels == to.channels
                                ? sampleAt(frame + c * from.bytesPerSample(), from.sample)
                                : mono;
            frames[size_t(f) * size_t(to.channels) + size_t(c)] = v;
        }
    }

    const qint64 outFrames = from.sampleRate == to.sampleRate
                                 ? inFrames
                                 : qint64(inFrames) * to.sampleRate / from.sampleRate;
    QByteArray out(qsizetype(outFrames) * to.bytesPerFrame(), Qt::Uninitialized);
    char *o = out.data();
    const double step = double(from.sampleRate) / double(to.sampleRate);
    for (qint64 f = 0; f < outFrames; ++f) {
        const double x = double(f) * step;
        const qint64 i = qint64(x);
        const float t = float(x - double(i));
        const qint64 j = std::min<qint64>(i + 1, inFrames - 1);
        for (int c = 0; c < to.channels; ++c) {
            const float a = frames[size_t(i) * size_t(to.channels) + size_t(c)];
            const float b = frames[size_t(j) * size_t(to.channels) + size_t(c)];
            putSample(o + (f * to.channels + c) * to.bytesPerSample(), to.sample, a + (b - a) * t);
        }
    }
    return out;
}

} // namespace kelvora
