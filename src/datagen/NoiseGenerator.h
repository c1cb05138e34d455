#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

// Synthetic radio interference ("QRM") recordings shipped as qrm/qrm1.wav to
// qrm/qrm3.wav. They play from their beginning under every exercise, so each
// one is busy from its first second and keeps the learner's tone (about
// 891 Hz) readable: moderate RMS, no clipping, no station on that pitch.
// Everything is computed from fixed seeds with plain arithmetic, so the files
// are byte-identical on every build and machine.
namespace kelvora::noise {

// Mono 16-bit PCM.
struct Pcm16 {
    int sampleRate = 11025;
    std::vector<int16_t> samples;
};

enum class Kind {
    Static = 1,   // qrm1
    Station = 2,  // qrm2
    Stations = 3, // qrm3
};

inline constexpr int kSampleRate = 11025;
inline constexpr double kQrmSeconds = 65.0;
// Longer requests are cut here so a WAV file stays far below its 4 GiB limit.
inline constexpr double kMaxSeconds = 3600.0;

// qrm1: band-limited hiss with slow fading, small crackles and loud lightning
// crashes (sharp onset, decay over tens to hundreds of milliseconds).
Pcm16 staticWithCrashes(double seconds, uint32_t seed);

// qrm2: one amateur station near 1 kHz (950-1050 Hz, slight drift and chirp)
// sending CQ calls and QSO exchanges at 16-20 wpm with soft keying, over a
// little hiss, with slow QSB fading.
Pcm16 interferingStation(double seconds, uint32_t seed);

// qrm3: 4 to 6 stations between 500 and 1500 Hz (none near 891 Hz), each with
// its own speed, level and fading, starting and stopping at different times,
// over hiss.
Pcm16 severalStations(double seconds, uint32_t seed);

// Dispatches to one of the three generators above.
Pcm16 generate(Kind kind, double seconds, uint32_t seed);

// The fixed seed and file name ("qrm1.wav"...) of each installed recording.
uint32_t qrmSeed(Kind kind);
QString qrmFileName(Kind kind);

// Canonical PCM WAV: 44-byte header, 16-bit mono, little-endian.
QByteArray wavFile(const Pcm16 &pcm);

// Writes dir/qrm1.wav, dir/qrm2.wav and dir/qrm3.wav (kQrmSeconds each, fixed
// seeds), creating dir if needed. On failure returns false and, if error is
// not null, sets it to a French message.
bool writeQrmFiles(const QString &dir, QString *error);

} // namespace kelvora::noise
