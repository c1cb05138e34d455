#include "morse/ToneBank.h"

#include "core/Numbers.h"

#include <cmath>

namespace kelvora {

namespace {

QString volumeError(double volume)
{
    return QStringLiteral("Volume %1 hors limites : la valeur doit être comprise entre 1 et 127.")
        .arg(numbers::format(volume));
}

QString durationError()
{
    return QStringLiteral("Réglages impossibles : un point, un trait ou un espace durerait plus "
                          "d'une heure. Vérifiez la vitesse et les nombres de points.");
}

// Int(x) of the program: towards minus infinity; NaN counts as no samples.
qint64 sampleCount(double samples)
{
    if (!(samples > 0))
        return 0;
    return qint64(std::floor(samples));
}

std::optional<QByteArray> silence(double samples, QString *error)
{
    if (samples > longestElementSamples) {
        if (error)
            *error = durationError();
        return std::nullopt;
    }
    return QByteArray(sampleCount(samples), char(silenceSample));
}

} // namespace

std::optional<QByteArray> toneBuffer(double durationMs, double volume, double frequency,
                                     QString *error)
{
    const double exact = durationMs * 8000 / 1000;
    if (exact > longestElementSamples) {
        if (error)
            *error = durationError();
        return std::nullopt;
    }
    const qint64 n = sampleCount(exact);
    double amplitude = volume;
    double phase = 0;
    const double step = frequency * 8 * (1.0 / 8000);
    QByteArray buffer(n, Qt::Uninitialized);
    for (qint64 i = 1; i <= n; ++i) {
        if (i > n - 10)
            amplitude = std::floor(amplitude / 1.2);
        const double sample = 128 + std::floor(amplitude * std::sin(phase));
        if (!(sample >= 0 && sample <= 255)) {
            if (error)
                *error = volumeError(volume);
            return std::nullopt;
        }
        buffer[i - 1] = char(static_cast<unsigned char>(sample));
        phase += step;
    }
    return buffer;
}

std::optional<ToneBank> calech(const ToneSettings &settings, QString *error)
{
    const double volume = numbers::leadingNumber(settings.volume);
    if (volume > 127) {
        if (error)
            *error = volumeError(volume);
        return std::nullopt;
    }
    const double frequency = numbers::leadingNumber(settings.frequency);
    const double sup = numbers::leadingNumber(settings.sup);
    const TimingPlan &plan = settings.plan;

    ToneBank bank;
    auto dot = toneBuffer(plan.dot, volume, frequency, error);
    if (!dot)
        return std::nullopt;
    auto dash = toneBuffer(plan.dash, volume, frequency, error);
    if (!dash)
        return std::nullopt;
    auto elementGap = silence(plan.elementGap * 8, error);
    if (!elementGap)
        return std::nullopt;
    auto letterGap = silence(sup * (plan.letterGap * 8), error);
    if (!letterGap)
        return std::nullopt;
    auto wordGap = silence(sup * (plan.wordGap * 8), error);
    if (!wordGap)
        return std::nullopt;
    bank.dot = std::move(*dot);
    bank.dash = std::move(*dash);
    bank.elementGap = std::move(*elementGap);
    bank.letterGap = std::move(*letterGap);
    bank.wordGap = std::move(*wordGap);
    return bank;
}

} // namespace kelvora
