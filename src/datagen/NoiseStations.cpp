#include "NoiseStations.h"

#include <array>

// A fused multiply-add rounds differently from a multiply then an add; keep
// the arithmetic unfused so the files are identical on every processor (the
// library is also built with -ffp-contract=off, for the inline functions).
#if defined(__clang__)
#pragma STDC FP_CONTRACT OFF
#elif defined(__GNUC__)
#pragma GCC optimize("fp-contract=off")
#endif

namespace kelvora::noise::detail {
namespace {

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

std::string twice(std::string_view word)
{
    std::string s(word);
    return s + " " + s;
}

} // namespace


double keyText(std::string_view text, double t, double dot, std::vector<KeyDown> &keys,
               double stopAt)
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

} // namespace kelvora::noise::detail
