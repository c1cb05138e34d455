#include "NoiseGenerator.h"

#include "NoiseStations.h"

#include "audio/WavHeader.h"
#include "core/CheckedFile.h"

#include <QDir>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>

// A fused multiply-add rounds differently from a multiply then an add; keep
// the arithmetic unfused so the files are identical on every processor (the
// library is also built with -ffp-contract=off, for the inline functions).
#if defined(__clang__)
#pragma STDC FP_CONTRACT OFF
#elif defined(__GNUC__)
#pragma GCC optimize("fp-contract=off")
#endif


namespace kelvora::noise {
using namespace detail;
namespace {

// ---------------------------------------------------------------------------
// Final shaping, common to the three recordings.

std::size_t sampleCount(double seconds)
{
    if (!(seconds > 0.0)) // also rejects NaN
        return 0;
    return static_cast<std::size_t>(std::llround(std::min(seconds, kMaxSeconds) * kRate));
}

// Gentle limiter: transparent below 0.7 of full scale, never beyond 0.95.
double softLimit(double x)
{
    constexpr double knee = 0.7;
    constexpr double room = 0.25;
    const double a = std::fabs(x);
    if (a <= knee)
        return x;
    const double u = (a - knee) / room;
    const double y = knee + room * u / (1.0 + u);
    return x < 0.0 ? -y : y;
}

Pcm16 finish(std::vector<double> &mix, double targetRmsDbfs)
{
    Pcm16 pcm;
    pcm.sampleRate = kSampleRate;
    const double rms = rmsOf(mix);
    if (rms > 0.0)
        scale(mix, dbToGain(targetRmsDbfs) / rms);
    // Short fades: no click when the player starts or reaches the end.
    const std::size_t fadeIn = std::min(mix.size(), static_cast<std::size_t>(0.02 * kRate));
    const std::size_t fadeOut = std::min(mix.size(), static_cast<std::size_t>(0.05 * kRate));
    for (std::size_t i = 0; i < fadeIn; ++i)
        mix[i] *= 0.5 - 0.5 * cosTurns(static_cast<double>(i) / (2.0 * static_cast<double>(fadeIn)));
    for (std::size_t i = 0; i < fadeOut; ++i)
        mix[mix.size() - 1 - i] *= 0.5 - 0.5 * cosTurns(static_cast<double>(i) / (2.0 * static_cast<double>(fadeOut)));
    pcm.samples.reserve(mix.size());
    for (const double x : mix) {
        const double v = std::clamp(softLimit(x) * 32767.0, -32000.0, 32000.0);
        pcm.samples.push_back(static_cast<int16_t>(std::lround(v)));
    }
    return pcm;
}

// A burst of band-limited noise with an instantaneous-ish attack and an
// exponential decay, normalised to the given peak.
std::vector<double> burst(Random &rng, double attackSeconds, double decaySeconds, double lengthSeconds,
                          double peak)
{
    const std::size_t n = static_cast<std::size_t>(lengthSeconds * kRate) + 1;
    std::vector<double> out(n);
    Passband filter(250.0, 2600.0);
    const double attack = std::max(1.0, attackSeconds * kRate);
    const double decay = expOf(-1.0 / (decaySeconds * kRate));
    double level = 1.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double x = static_cast<double>(i);
        const double envelope = x < attack ? x / attack : (level *= decay);
        out[i] = filter(rng.gaussian() * envelope);
    }
    double top = 0.0;
    for (const double v : out)
        top = std::max(top, std::fabs(v));
    if (top > 0.0)
        scale(out, peak / top);
    return out;
}

void addAt(std::vector<double> &mix, const std::vector<double> &sound, double startSeconds)
{
    const std::size_t start = static_cast<std::size_t>(std::max(0.0, startSeconds) * kRate);
    for (std::size_t i = 0; i < sound.size() && start + i < mix.size(); ++i)
        mix[start + i] += sound[i];
}

} // namespace

// ---------------------------------------------------------------------------

Pcm16 staticWithCrashes(double seconds, uint32_t seed)
{
    Random rng(seed);
    const std::size_t n = sampleCount(seconds);
    const double length = static_cast<double>(n) / kRate;

    // Hiss (RMS 1) with slow fading; crackles and crashes are set against it.
    std::vector<double> mix = hiss(n, rng, 200.0, 2500.0);
    const SlowFade fading(rng, 7.0, 6.0, 25.0);
    for (std::size_t i = 0; i < n; ++i)
        mix[i] *= fading.gainAt(static_cast<double>(i) / kRate);

    // Crackles: short pops a few dB above the hiss, a few per second.
    for (double t = rng.exponential(0.3); t < length; t += rng.exponential(0.3)) {
        const double decay = rng.uniform(0.0003, 0.002);
        const double peakDb = rng.uniform(8.0, 16.0);
        addAt(mix, burst(rng, 0.0, decay, 6.0 * decay, dbToGain(peakDb)), t);
    }

    // Lightning crashes: one to four strokes, sharp onset, long decay. The
    // first comes early, since an exercise may be short.
    for (double t = rng.uniform(0.5, 3.0); t < length; t += 2.0 + rng.exponential(4.5)) {
        const int strokes = rng.between(1, 4);
        double strokeTime = t;
        double peakDb = rng.uniform(17.0, 24.0);
        for (int s = 0; s < strokes; ++s) {
            const double attack = rng.uniform(0.0005, 0.003);
            const double decay = rng.uniform(0.03, 0.25);
            addAt(mix, burst(rng, attack, decay, attack + 5.0 * decay, dbToGain(peakDb)), strokeTime);
            strokeTime += rng.uniform(0.02, 0.15);
            peakDb -= rng.uniform(1.0, 6.0);
        }
    }
    return finish(mix, -24.0);
}

Pcm16 interferingStation(double seconds, uint32_t seed)
{
    Random rng(seed);
    const std::size_t n = sampleCount(seconds);
    const double length = static_cast<double>(n) / kRate;

    Station station;
    station.pitchHz = rng.uniform(960.0, 1040.0);
    station.driftHz = rng.uniform(-15.0, 15.0);
    station.wanderHz = rng.uniform(1.0, 3.0);
    station.wanderPeriod = rng.uniform(5.0, 15.0);
    station.wanderPhase = rng.uniform();
    station.chirpHz = rng.uniform(4.0, 10.0);
    station.chirpSeconds = rng.uniform(0.01, 0.03);
    station.qsb = SlowFade(rng, rng.uniform(5.0, 8.0), 4.0, 15.0);
    const double dot = dotSeconds(rng.uniform(16.0, 20.0));
    const std::string me = callSign(rng);

    // Starts at once, and keeps the gaps short (the partner's unheard
    // replies), so any exercise hears it.
    double t = rng.uniform(0.2, 0.6);
    while (t < length) {
        for (const std::string &transmission : ragChew(rng, me)) {
            t = keyText(transmission, t, dot, station.keys, length);
            t += rng.uniform(1.5, 3.0);
            if (t >= length)
                break;
        }
    }
    std::vector<double> mix = hiss(n, rng, 300.0, 2700.0);
    scale(mix, 0.08);
    addStation(station, mix);
    return finish(mix, -23.0);
}

Pcm16 severalStations(double seconds, uint32_t seed)
{
    Random rng(seed);
    const std::size_t n = sampleCount(seconds);
    const double length = static_cast<double>(n) / kRate;

    // Pitch slots at least 110 Hz apart and away from the learner's 891 Hz;
    // each station takes one and is jittered by up to 15 Hz.
    std::array<double, 8> pitchSlots{540.0, 660.0, 780.0, 1005.0, 1125.0, 1245.0, 1365.0, 1475.0};
    for (std::size_t i = pitchSlots.size() - 1; i > 0; --i) // Fisher-Yates
        std::swap(pitchSlots[i], pitchSlots[static_cast<std::size_t>(rng.below(static_cast<int>(i) + 1))]);

    std::vector<double> mix = hiss(n, rng, 300.0, 2700.0);
    scale(mix, 0.12);

    const int count = rng.between(4, 6);
    for (int index = 0; index < count; ++index) {
        Station station;
        station.pitchHz = pitchSlots[static_cast<std::size_t>(index)] + rng.uniform(-15.0, 15.0);
        station.driftHz = rng.uniform(-6.0, 6.0);
        station.wanderHz = rng.uniform(0.5, 2.0);
        station.wanderPeriod = rng.uniform(5.0, 20.0);
        station.wanderPhase = rng.uniform();
        station.chirpHz = rng.chance(0.3) ? rng.uniform(5.0, 15.0) : 0.0;
        station.chirpSeconds = rng.uniform(0.01, 0.03);
        // Within a few dB of each other, so that no single one dominates.
        station.amplitude = dbToGain(rng.uniform(-7.0, 0.0));
        station.qsb = SlowFade(rng, rng.uniform(3.0, 7.0), 3.0, 12.0);
        const double dot = dotSeconds(rng.between(12, 28));
        const std::string me = callSign(rng);
        const int style = rng.below(3);

        // Active windows separated by silences; two stations open at once, so
        // even a short exercise hears more than one.
        double t = index == 0 ? rng.uniform(0.0, 0.5) : index == 1 ? rng.uniform(0.3, 2.0) : rng.uniform(2.0, 18.0);
        while (t < length) {
            const double windowEnd = std::min(length, t + rng.uniform(10.0, 28.0));
            while (t < windowEnd) {
                const std::vector<std::string> transmissions = style == 0   ? ragChew(rng, me)
                                                               : style == 1 ? contestRun(rng, me)
                                                                            : calling(rng, me);
                for (const std::string &transmission : transmissions) {
                    t = keyText(transmission, t, dot, station.keys, windowEnd);
                    t += style == 1 ? rng.uniform(0.6, 1.5) : rng.uniform(1.0, 2.5);
                    if (t >= windowEnd)
                        break;
                }
            }
            t += rng.uniform(4.0, 12.0);
        }
        addStation(station, mix);
    }
    return finish(mix, -22.0);
}

Pcm16 generate(Kind kind, double seconds, uint32_t seed)
{
    switch (kind) {
    case Kind::Static:
        return staticWithCrashes(seconds, seed);
    case Kind::Station:
        return interferingStation(seconds, seed);
    case Kind::Stations:
        return severalStations(seconds, seed);
    }
    return {};
}

uint32_t qrmSeed(Kind kind)
{
    switch (kind) {
    case Kind::Static:
        return 0x4B51524Du;
    case Kind::Station:
        return 0x4B515232u;
    case Kind::Stations:
        return 0x4B515233u;
    }
    return 0;
}

QString qrmFileName(Kind kind)
{
    return QStringLiteral("qrm%1.wav").arg(static_cast<int>(kind));
}

QByteArray wavFile(const Pcm16 &pcm)
{
    const auto dataBytes = static_cast<quint32>(pcm.samples.size() * 2);
    QByteArray out = wavHeader(PcmFormat{pcm.sampleRate, 1, PcmSample::Int16}, dataBytes);
    out.reserve(static_cast<qsizetype>(wavHeaderSize + dataBytes));
    for (const int16_t s : pcm.samples) {
        out.append(static_cast<char>(quint16(s) & 0xFFu));
        out.append(static_cast<char>((quint16(s) >> 8) & 0xFFu));
    }
    return out;
}

bool writeQrmFiles(const QString &dir, QString *error)
{
    auto fail = [error](const QString &message) {
        if (error != nullptr)
            *error = message;
        return false;
    };
    if (dir.isEmpty())
        return fail(QStringLiteral("Aucun dossier de destination n'est indiqué pour les fichiers de QRM."));
    if (!QDir().mkpath(dir))
        return fail(QStringLiteral("Impossible de créer le dossier « %1 ».").arg(QDir::toNativeSeparators(dir)));
    for (const Kind kind : {Kind::Static, Kind::Station, Kind::Stations}) {
        const QString path = QDir(dir).filePath(qrmFileName(kind));
        QString why;
        if (!kelvora::CheckedFile::writeAll(path, wavFile(generate(kind, kQrmSeconds, qrmSeed(kind))), &why))
            return fail(why);
    }
    if (error != nullptr)
        error->clear();
    return true;
}

} // namespace kelvora::noise
