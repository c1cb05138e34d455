#pragma once

// The arithmetic of the noise recordings: elementary functions, random numbers and
// filters, all from + - * / so that the files are the same on every machine.
#include "NoiseGenerator.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace kelvora::noise::detail {

inline constexpr double kRate = kSampleRate;
inline constexpr double kTwoPi = 6.283185307179586476925;
inline constexpr double kLn2 = 0.6931471805599453094172;
inline constexpr double kLn10 = 2.302585092994045684018;

// Elementary functions from + - * / only: libm results may differ in the last
// bit between systems, which would change the rounded samples.
double sinTurns(double turns); // sin(2*pi*turns)
double cosTurns(double turns);
double expOf(double x);
double lnOf(double x); // x > 0
double dbToGain(double db);

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

double rmsOf(const std::vector<double> &v);
void scale(std::vector<double> &v, double factor);

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

// Gaussian hiss through the receiver passband, RMS 1.
std::vector<double> hiss(std::size_t n, Random &rng, double lowHz, double highHz);

} // namespace kelvora::noise::detail
