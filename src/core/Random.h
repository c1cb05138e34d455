#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace kelvora::random {

// The program's one random source: uniform in [0, 1), seeded from the clock at start.
double rnd();
void seed(std::uint64_t value);
void seedFromClock();
// Int(rnd() * n) + base, the form every draw of the program takes.
int draw(int n, int base = 0);
// The seed a user typed: any whole number (a negative one counts modulo 2^64); nullopt
// for anything else.
std::optional<std::uint64_t> parseSeed(const QString &text);

} // namespace kelvora::random
