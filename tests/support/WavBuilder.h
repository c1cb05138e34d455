#pragma once

#include "audio/PcmFormat.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <cmath>

// WAV files made by the tests themselves: a header, optional extra chunks, samples.
namespace kelvora::wavbuilder {

inline QByteArray le32(quint32 v)
{
    QByteArray b(4, '\0');
    qToLittleEndian<quint32>(v, b.data());
    return b;
}

inline QByteArray le16(quint16 v)
{
    QByteArray b(2, '\0');
    qToLittleEndian<quint16>(v, b.data());
    return b;
}

inline QByteArray fmtChunk(const PcmFormat &f, quint16 tag = 1)
{
    return "fmt " + le32(16) + le16(tag) + le16(quint16(f.channels)) + le32(quint32(f.sampleRate))
           + le32(quint32(f.sampleRate * f.bytesPerFrame())) + le16(quint16(f.bytesPerFrame()))
           + le16(quint16(f.bytesPerSample() * 8));
}

inline QByteArray chunk(const QByteArray &id, const QByteArray &body, bool pad = true)
{
    QByteArray c = id + le32(quint32(body.size())) + body;
    if (pad && body.size() % 2 == 1)
        c += '\0';
    return c;
}

// A whole file; `declaredData` < 0 means the real size of `pcm`.
inline QByteArray wav(const PcmFormat &f, const QByteArray &pcm, const QByteArray &before = {},
                      qint64 declaredData = -1)
{
    const quint32 dataSize = quint32(declaredData < 0 ? pcm.size() : declaredData);
    const QByteArray body = "WAVE" + fmtChunk(f) + before + "data" + le32(dataSize) + pcm;
    return "RIFF" + le32(quint32(body.size())) + body;
}

// A sine of `ms` at `hz`, 8-bit unsigned mono.
inline QByteArray toneU8(int ms, int rate = 8000, double hz = 600, int amplitude = 100)
{
    const int n = ms * rate / 1000;
    QByteArray out(n, Qt::Uninitialized);
    for (int i = 0; i < n; ++i)
        out[i] = char(128 + int(std::lround(amplitude * std::sin(2 * M_PI * hz * i / rate))));
    return out;
}

inline QByteArray silenceU8(int ms, int rate = 8000)
{
    return QByteArray(ms * rate / 1000, char(128));
}

// `ms` of samples of any format, a soft tone so that a listener hears something.
inline QByteArray pcmFor(const PcmFormat &f, int ms)
{
    const qint64 frames = qint64(ms) * f.sampleRate / 1000;
    QByteArray out;
    out.reserve(qsizetype(frames * f.bytesPerFrame()));
    for (qint64 i = 0; i < frames; ++i) {
        const double v = 0.3 * std::sin(2 * M_PI * 500 * double(i) / f.sampleRate);
        for (int c = 0; c < f.channels; ++c) {
            if (f.sample == PcmSample::UInt8)
                out += char(128 + int(std::lround(v * 127)));
            else
                out += le16(quint16(qint16(std::lround(v * 32767))));
        }
    }
    return out;
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

inline const PcmFormat morseFormat{8000, 1, PcmSample::UInt8};

} // namespace kelvora::wavbuilder
