#include "NoiseDsp.h"

#include <algorithm>

// A fused multiply-add rounds differently from a multiply then an add; keep
// the arithmetic unfused so the files are identical on every processor (the
// library is also built with -ffp-contract=off, for the inline functions).
#if defined(__clang__)
#pragma STDC FP_CONTRACT OFF
#elif defined(__GNUC__)
#pragma GCC optimize("fp-contract=off")
#endif

namespace kelvora::noise::detail {

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

} // namespace kelvora::noise::detail
