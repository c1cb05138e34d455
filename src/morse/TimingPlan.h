#pragma once

namespace kelvora {

// Durations in milliseconds; only the dot is whole, the others keep the fraction a
// fractional dot count gives.
struct TimingPlan {
    double dot = 0;
    double dash = 0;
    double elementGap = 0;
    double letterGap = 0;
    double wordGap = 0;
};

} // namespace kelvora
