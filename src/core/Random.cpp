#include "core/Random.h"

#include <chrono>
#include <cmath>
#include <random>

namespace kelvora::random {

namespace {
std::mt19937_64 &engine()
{
    static std::mt19937_64 e{0x4b656c766f7261ULL};
    return e;
}
} // namespace

double rnd()
{
    // 53 random bits give every double of [0, 1) the same chance and never 1.
    return double(engine()() >> 11) * (1.0 / 9007199254740992.0);
}

void seed(std::uint64_t value)
{
    engine().seed(value);
}

void seedFromClock()
{
    seed(std::uint64_t(std::chrono::steady_clock::now().time_since_epoch().count())
         ^ std::uint64_t(std::chrono::system_clock::now().time_since_epoch().count()));
}

int draw(int n, int base)
{
    return int(std::floor(rnd() * n)) + base;
}

std::optional<std::uint64_t> parseSeed(const QString &text)
{
    bool ok = false;
    const QString trimmed = text.trimmed();
    std::uint64_t seed = trimmed.toULongLong(&ok);
    if (!ok)
        seed = std::uint64_t(trimmed.toLongLong(&ok));
    return ok ? std::optional(seed) : std::nullopt;
}

} // namespace kelvora::random
