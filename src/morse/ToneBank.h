#pragma once

#include "morse/TimingPlan.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kelvora {

// Five ready-made buffers of unsigned 8-bit samples at 8000 samples per second; the
// renderer only copies them, so the sine is computed for one dot and one dash.
struct ToneBank {
    QByteArray dot;
    QByteArray dash;
    QByteArray elementGap;
    QByteArray letterGap; // stretched by SUP
    QByteArray wordGap;   // stretched by SUP
};

struct ToneSettings {
    TimingPlan plan;
    QString volume;    // VOL
    QString frequency; // FRE
    QString sup;       // extra thinking-time coefficient
};

inline constexpr int sampleRate = 8000;
inline constexpr unsigned char silenceSample = 128;
// One element longer than an hour is a setting error, not something to allocate.
inline constexpr double longestElementSamples = 3600.0 * sampleRate;

// The tone: the phase step is F × 8 / 8000 radians, so the pitch heard is 4F/π Hz
// (891 Hz for the setting 700); the frequency box is a scale, not hertz. The last
// ten samples decay by Int(A / 1.2) each, there is no rise at the start.
std::optional<QByteArray> toneBuffer(double durationMs, double volume, double frequency,
                                     QString *error);

// calech: builds the five buffers. A volume above 127 (or any sample outside 0..255)
// is an error returned before anything is written.
std::optional<ToneBank> calech(const ToneSettings &settings, QString *error);

} // namespace kelvora
