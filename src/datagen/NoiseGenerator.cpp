#include "NoiseGenerator.h"

#include "audio/WavHeader.h"

#include <QDir>
#include <QSaveFile>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <string_view>

// A fused multiply-add rounds differently from a multiply then an add; keep
// the arithmetic unfused so the files are identical on every processor.
#if defined(__clang__)
#pragma STDC FP_CONTRACT OFF
#elif defined(__GNUC__)
#pragma GCC optimize("fp-contract=off")
#endif

namespace kelvora::noise {
namespace {

constexpr double kRate = kSampleRate;
constexpr double kTwoPi = 6.283185307179586476925;
constexpr double kLn2 = 0.6931471805599453094172;
constexpr double kLn10 = 2.302585092994045684018;

// ---------------------------------------------------------------------------
// Elementary functions from + - * / only: libm results may differ in the last
// bit between systems, which would change the rounded samples.

// sin(2*pi*turns).
double sinTurns(double turns)
{
    double t = turns - std::floor(turns + 0.5); // [-0.5, 0.5)
    if (t > 0.25)
        t = 0.5 - t;
    else if (t < -0.25)
        t = -0.5 - t;
    const double x = kTwoPi * t; // [-pi/2, pi/2]
    const double x2 = x * x;
    // Taylor series up to x^17: error below 1e-13 on this range.
    double s = 1.0;
    for (const double d : {272.0, 210.0, 156.0, 110.0, 72.0, 42.0, 20.0, 6.0})
        s = 1.0 - x2 / d * s;
    return x * s;
}

double cosTurns(double turns)
{
    return sinTurns(turns + 0.25);
}

double expOf(double x)
{
    if (x < -700.0)
        return 0.0;
    x = std::min(x, 700.0);
    const double k = std::floor(x / kLn2 + 0.5);
    const double r = x - k * kLn2; // |r| <= ln2/2
    double s = 1.0;
    for (int i = 16; i >= 1; --i)
        s = 1.0 + r / i * s;
    return std::ldexp(s, static_cast<int>(k));
}

// Natural logarithm of x > 0.
double lnOf(double x)
{
    int e = 0;
    double m = std::frexp(x, &e); // [0.5, 1)
    if (m < 0.70710678118654752440) {
        m *= 2.0;
        --e;
    }
    const double z = (m - 1.0) / (m + 1.0); // |z| < 0.172
    const double z2 = z * z;
    double s = 0.0;
    for (int i = 25; i >= 1; i -= 2)
        s = 1.0 / i + z2 * s;
    return 2.0 * z * s + e * kLn2;
}

double dbToGain(double db)
{
    return expOf(db * kLn10 / 20.0);
}

// ---------------------------------------------------------------------------
// Random numbers. std::mt19937 is fully defined by the standard, its
// distributions are not, so they are derived here from the raw 32-bit words.
// Never two draws in one expression: argument evaluation order is unspecified.
class Random {
public:
    explicit Random(uint32_t seed) : m_engine(seed) {}

    uint32_t bits() { return static_cast<uint32_t>(m_engine()); }

    // [0, 1) with 53 random bits.
    double uniform()
    {
        const uint64_t high = bits() >> 5;
        const uint64_t low = bits() >> 6;
        return static_cast<double>(high * 67108864u + low) * (1.0 / 9007199254740992.0);
    }

    double uniform(double lo, double hi) { return lo + (hi - lo) * uniform(); }

    // [0, n)
    int below(int n)
    {
        return static_cast<int>((static_cast<uint64_t>(bits()) * static_cast<uint64_t>(n)) >> 32);
    }

    int between(int lo, int hi) { return lo + below(hi - lo + 1); }

    bool chance(double p) { return uniform() < p; }

    // Box-Muller.
    double gaussian()
    {
        if (m_hasSpare) {
            m_hasSpare = false;
            return m_spare;
        }
        const double u1 = 1.0 - uniform(); // (0, 1]
        const double u2 = uniform();
        const double radius = std::sqrt(-2.0 * lnOf(u1));
        m_spare = radius * sinTurns(u2);
        m_hasSpare = true;
        return radius * cosTurns(u2);
    }

    double exponential(double mean) { return -mean * lnOf(1.0 - uniform()); }

    template <typename T, std::size_t N>
    const T &pick(const std::array<T, N> &items)
    {
        return items[static_cast<std::size_t>(below(static_cast<int>(N)))];
    }

private:
    std::mt19937 m_engine;
    double m_spare = 0.0;
    bool m_hasSpare = false;
};

// ---------------------------------------------------------------------------
// Filters.

// Biquad from the audio EQ cookbook, transposed direct form II.
struct Biquad {
    double b0 = 1.0, b1 = 0.0, b2 = 0.0, a1 = 0.0, a2 = 0.0;
    double z1 = 0.0, z2 = 0.0;

    double operator()(double x)
    {
        const double y = b0 * x + z1;
        z1 = b1 * x - a1 * y + z2;
        z2 = b2 * x - a2 * y;
        return y;
    }

    static Biquad make(double hz, double q, bool highPass)
    {
        const double w = hz / kRate;
        const double c = cosTurns(w);
        const double alpha = sinTurns(w) / (2.0 * q);
        const double a0 = 1.0 + alpha;
        Biquad f;
        const double side = highPass ? (1.0 + c) : (1.0 - c);
        f.b0 = side / 2.0 / a0;
        f.b1 = (highPass ? -side : side) / a0;
        f.b2 = f.b0;
        f.a1 = -2.0 * c / a0;
        f.a2 = (1.0 - alpha) / a0;
        return f;
    }
};

// A receiver's audio passband: 4th-order Butterworth high- and low-pass.
class Passband {
public:
    Passband(double lowHz, double highHz)
        : m_stages{Biquad::make(lowHz, 0.54119610, true), Biquad::make(lowHz, 1.30656296, true),
                   Biquad::make(highHz, 0.54119610, false), Biquad::make(highHz, 1.30656296, false)}
    {
    }

    double operator()(double x)
    {
        for (Biquad &stage : m_stages)
            x = stage(x);
        return x;
    }

private:
    std::array<Biquad, 4> m_stages;
};

double rmsOf(const std::vector<double> &v)
{
    if (v.empty())
        return 0.0;
    double sum = 0.0;
    for (const double x : v)
        sum += x * x;
    return std::sqrt(sum / static_cast<double>(v.size()));
}

void scale(std::vector<double> &v, double factor)
{
    for (double &x : v)
        x *= factor;
}

// Gaussian hiss through the receiver passband, RMS 1.
std::vector<double> hiss(std::size_t n, Random &rng, double lowHz, double highHz)
{
    Passband filter(lowHz, highHz);
    for (int i = 0; i < 4000; ++i) // settle, so the start is not quieter
        filter(rng.gaussian());
    std::vector<double> out(n);
    for (double &x : out)
        x = filter(rng.gaussian());
    const double rms = rmsOf(out);
    if (rms > 0.0)
        scale(out, 1.0 / rms);
    return out;
}

// Slow random fading: a gain swinging within +-depthDb/2 as a sum of three
// slow sines with unrelated periods.
class SlowFade {
public:
    SlowFade() = default;
    SlowFade(Random &rng, double depthDb, double minPeriod, double maxPeriod) : m_depthDb(depthDb)
    {
        double total = 0.0;
        for (std::size_t i = 0; i < 3; ++i) {
            const double period = rng.uniform(minPeriod, maxPeriod);
            m_frequency[i] = 1.0 / period;
            m_phase[i] = rng.uniform();
            m_weight[i] = rng.uniform(0.5, 1.0);
            total += m_weight[i];
        }
        for (double &w : m_weight)
            w /= total;
    }

    double gainAt(double seconds) const
    {
        if (m_depthDb == 0.0)
            return 1.0;
        double s = 0.0;
        for (std::size_t i = 0; i < 3; ++i)
            s += m_weight[i] * sinTurns(m_frequency[i] * seconds + m_phase[i]);
        return dbToGain(0.5 * m_depthDb * s);
    }

private:
    double m_depthDb = 0.0;
    std::array<double, 3> m_frequency{};
    std::array<double, 3> m_phase{};
    std::array<double, 3> m_weight{};
};

// ---------------------------------------------------------------------------
// Morse keying of the interfering stations (their own small table: these are
// background sounds, not the learner's characters).

struct MorseCode {
    char character;
    const char *pattern;
};

constexpr std::array<MorseCode, 39> kMorse{{
    {'A', ".-"},    {'B', "-..."},  {'C', "-.-."},  {'D', "-.."},    {'E', "."},     {'F', "..-."},
    {'G', "--."},   {'H', "...."},  {'I', ".."},    {'J', ".---"},   {'K', "-.-"},   {'L', ".-.."},
    {'M', "--"},    {'N', "-."},    {'O', "---"},   {'P', ".--."},   {'Q', "--.-"},  {'R', ".-."},
    {'S', "..."},   {'T', "-"},     {'U', "..-"},   {'V', "...-"},   {'W', ".--"},   {'X', "-..-"},
    {'Y', "-.--"},  {'Z', "--.."},  {'0', "-----"}, {'1', ".----"},  {'2', "..---"}, {'3', "...--"},
    {'4', "....-"}, {'5', "....."}, {'6', "-...."}, {'7', "--..."},  {'8', "---.."}, {'9', "----."},
    {'/', "-..-."}, {'?', "..--.."}, {'=', "-...-"},
}};

const char *morsePattern(char c)
{
    for (const MorseCode &code : kMorse) {
        if (code.character == c)
            return code.pattern;
    }
    return nullptr;
}

struct KeyDown {
    double start; // seconds
    double end;
};

// Keys text from time t at the given dot length with standard spacing
// (element 1, letter 3, word 7 dots). A word that would start at or after
// stopAt is not sent. Returns the end of the last element sent (t if none).
double keyText(std::string_view text, double t, double dot, std::vector<KeyDown> &keys,
               double stopAt = std::numeric_limits<double>::infinity())
{
    // Whole dot units from t, so every edge is an exact multiple of the dot.
    long units = 0;
    long endUnits = 0;
    bool any = false;
    bool wordGap = false;
    for (const char c : text) {
        if (c == ' ') {
            wordGap = any;
            continue;
        }
        const char *pattern = morsePattern(c);
        if (pattern == nullptr)
            continue;
        if (any) {
            const long next = endUnits + (wordGap ? 7 : 3);
            if (wordGap && t + static_cast<double>(next) * dot >= stopAt)
                break;
            units = next;
        } else if (t >= stopAt) {
            break;
        }
        any = true;
        wordGap = false;
        for (const char *p = pattern; *p != '\0'; ++p) {
            if (p != pattern)
                ++units;
            const long length = (*p == '-') ? 3 : 1;
            keys.push_back({t + static_cast<double>(units) * dot, t + static_cast<double>(units + length) * dot});
            units += length;
        }
        endUnits = units;
    }
    return t + static_cast<double>(endUnits) * dot;
}

// ---------------------------------------------------------------------------
// Plausible amateur traffic.

constexpr std::array<std::string_view, 26> kPrefixes{"F",  "F",  "F",  "F",  "ON", "DL", "DK", "G",  "EA",
                                                     "I",  "HB9", "OK", "SP", "PA", "OE", "LA", "SM", "OH",
                                                     "9A", "YO", "LZ", "S5", "CT", "EI", "OZ", "HA"};
constexpr std::array<std::string_view, 16> kNames{"JEAN", "PAUL", "MARC", "ERIC", "ALAIN", "HANS", "JOHN", "LUC",
                                                  "YVES", "TOM",  "PETER", "JOSE", "KARL", "ANDRE", "MIKE", "BOB"};
constexpr std::array<std::string_view, 16> kTowns{"LYON",  "PARIS", "NANTES", "BREST", "LILLE", "DIJON",
                                                  "NICE",  "METZ",  "GENEVE", "LIEGE", "MUNICH", "MADRID",
                                                  "TURIN", "BERN",  "ROUEN",  "TOURS"};
constexpr std::array<std::string_view, 8> kRigs{"IC7300", "FT991", "K3", "TS590", "FT817", "IC705", "KX3", "FT101"};
constexpr std::array<std::string_view, 6> kAntennas{"DIPOLE", "VERTICAL", "YAGI", "EFHW", "LOOP", "G5RV"};
constexpr std::array<std::string_view, 6> kWeather{"SUNNY", "CLOUDY", "RAIN", "SNOW", "FOG", "WINDY"};
constexpr std::array<std::string_view, 6> kReports{"599", "579", "589", "559", "449", "569"};
constexpr std::array<std::string_view, 4> kPowers{"5", "10", "50", "100"};
constexpr std::array<std::string_view, 3> kGreetings{"GM", "GA", "GE"};

std::string letters(Random &rng, int count)
{
    std::string s;
    for (int i = 0; i < count; ++i)
        s += static_cast<char>('A' + rng.below(26));
    return s;
}

std::string callSign(Random &rng)
{
    std::string call(rng.pick(kPrefixes));
    if (call == "F")
        call += "14568"[rng.below(5)];
    else if (call.back() < '0' || call.back() > '9')
        call += static_cast<char>('0' + rng.below(10));
    call += letters(rng, rng.chance(0.15) ? 2 : 3);
    if (rng.chance(0.1))
        call += "/P";
    return call;
}

std::string twice(std::string_view word)
{
    std::string s(word);
    return s + " " + s;
}

// One conversation as heard from one side: a CQ call, then the exchanges
// sent to a partner who answers unheard.
std::vector<std::string> ragChew(Random &rng, const std::string &me)
{
    const std::string other = callSign(rng);
    const std::string link = other + " DE " + me;
    std::vector<std::string> out;

    std::string cq = rng.chance(0.5) ? "CQ CQ CQ DE " : "CQ CQ DE ";
    cq += me + " " + me;
    if (rng.chance(0.5))
        cq += " " + me;
    cq += rng.chance(0.5) ? " PSE K" : " K";
    out.push_back(cq);

    // One draw per statement, in a fixed order (operand order is unspecified).
    const std::string_view greeting = rng.pick(kGreetings);
    const std::string_view report = rng.pick(kReports);
    const std::string_view name = rng.pick(kNames);
    const std::string_view town = rng.pick(kTowns);
    out.push_back(link + " = " + std::string(greeting) + " OM TNX FER CALL = UR RST " + twice(report) + " = NAME "
                  + twice(name) + " = QTH " + twice(town) + " = HW? " + link + " K");

    const std::string_view rig = rng.pick(kRigs);
    const std::string_view power = rng.pick(kPowers);
    const std::string_view antenna = rng.pick(kAntennas);
    const std::string_view weather = rng.pick(kWeather);
    const int temperature = rng.between(2, 28);
    out.push_back(link + " = R R FB OM = RIG " + std::string(rig) + " PWR " + std::string(power) + "W = ANT "
                  + std::string(antenna) + " = WX " + std::string(weather) + " TEMP " + std::to_string(temperature)
                  + "C = " + link + " K");

    out.push_back(link + " = TNX FER QSO ES 73 = GL ES HPE CUAGN = " + link + " SK");
    return out;
}

std::string serial(Random &rng)
{
    std::string n = std::to_string(rng.between(1, 850));
    while (n.size() < 3)
        n.insert(n.begin(), rng.chance(0.5) ? 'T' : '0'); // cut zeros, as contesters send them
    return n;
}

// A contest run: short CQs and quick exchanges.
std::vector<std::string> contestRun(Random &rng, const std::string &me)
{
    std::vector<std::string> out;
    const int contacts = rng.between(2, 4);
    for (int i = 0; i < contacts; ++i) {
        out.push_back("CQ TEST " + me + " " + me + " TEST");
        const std::string other = callSign(rng);
        out.push_back(other + " 5NN " + serial(rng));
        out.push_back("TU " + me);
    }
    return out;
}

// A station calling CQ over and over, or asking who called.
std::vector<std::string> calling(Random &rng, const std::string &me)
{
    std::vector<std::string> out;
    const int calls = rng.between(2, 4);
    for (int i = 0; i < calls; ++i) {
        if (rng.chance(0.25))
            out.push_back("QRZ? DE " + me + " K");
        else
            out.push_back("CQ CQ CQ DE " + me + " " + me + " " + me + " K");
    }
    return out;
}

// ---------------------------------------------------------------------------
// Station rendering.

constexpr double kRampSeconds = 0.005; // raised-cosine keying edges: no clicks

struct Station {
    double pitchHz = 1000.0;
    double driftHz = 0.0;     // linear over the recording, centred on pitchHz
    double wanderHz = 0.0;    // slow wobble of the oscillator
    double wanderPeriod = 20.0;
    double wanderPhase = 0.0;
    double chirpHz = 0.0;     // offset at each key-down, dying out quickly
    double chirpSeconds = 0.02;
    double amplitude = 1.0;
    SlowFade qsb;
    std::vector<KeyDown> keys;
};

// Adds the station's keyed tone to mix. Ramps are centred on the nominal
// edges, so the half-amplitude durations are exact multiples of the dot.
void addStation(const Station &s, std::vector<double> &mix)
{
    const std::size_t n = mix.size();
    if (n == 0 || s.keys.empty())
        return;
    const double seconds = static_cast<double>(n) / kRate;
    const double halfRamp = kRampSeconds / 2.0;
    const double chirpDecay = expOf(-1.0 / (s.chirpSeconds * kRate));
    std::size_t k = 0;
    std::size_t chirpedKey = s.keys.size();
    double chirp = 0.0;
    double phase = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double t = static_cast<double>(i) / kRate;
        while (k < s.keys.size() && t > s.keys[k].end + halfRamp)
            ++k;
        double envelope = 0.0;
        if (k < s.keys.size()) {
            const KeyDown &key = s.keys[k];
            const double rise = key.start - halfRamp;
            if (t >= rise) {
                if (chirpedKey != k) {
                    chirpedKey = k;
                    chirp = s.chirpHz;
                }
                if (t < key.start + halfRamp)
                    envelope = 0.5 - 0.5 * cosTurns((t - rise) / (2.0 * kRampSeconds));
                else if (t > key.end - halfRamp)
                    envelope = 0.5 - 0.5 * cosTurns((key.end + halfRamp - t) / (2.0 * kRampSeconds));
                else
                    envelope = 1.0;
            }
        }
        const double frequency = s.pitchHz + s.driftHz * (t / seconds - 0.5)
                                 + s.wanderHz * sinTurns(t / s.wanderPeriod + s.wanderPhase) + chirp;
        chirp *= chirpDecay;
        phase += frequency / kRate;
        phase -= std::floor(phase);
        if (envelope > 0.0)
            mix[i] += s.amplitude * envelope * s.qsb.gainAt(t) * sinTurns(phase);
    }
}

double dotSeconds(double wpm)
{
    return 1.2 / wpm; // PARIS: 50 dots per word
}

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
        QSaveFile file(path);
        const QByteArray bytes = wavFile(generate(kind, kQrmSeconds, qrmSeed(kind)));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
            return fail(QStringLiteral("Impossible d'écrire le fichier « %1 » : %2")
                            .arg(QDir::toNativeSeparators(path), file.errorString()));
        }
    }
    if (error != nullptr)
        error->clear();
    return true;
}

} // namespace kelvora::noise
