#pragma once

// The interfering stations of the noise recordings: plausible amateur traffic, its
// Morse keying, and the keyed tone of each station.
#include "NoiseDsp.h"

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace kelvora::noise::detail {

struct KeyDown {
    double start; // seconds
    double end;
};

// Keys text from time t at the given dot length with standard spacing
// (element 1, letter 3, word 7 dots). A word that would start at or after
// stopAt is not sent. Returns the end of the last element sent (t if none).
double keyText(std::string_view text, double t, double dot, std::vector<KeyDown> &keys,
               double stopAt = std::numeric_limits<double>::infinity());

std::string callSign(Random &rng);
std::string serial(Random &rng);
std::vector<std::string> ragChew(Random &rng, const std::string &me);
std::vector<std::string> contestRun(Random &rng, const std::string &me);
std::vector<std::string> calling(Random &rng, const std::string &me);

inline constexpr double kRampSeconds = 0.005; // raised-cosine keying edges: no clicks

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
void addStation(const Station &s, std::vector<double> &mix);

double dotSeconds(double wpm);

} // namespace kelvora::noise::detail
