#pragma once

#include "morse/TimingCalculator.h"
#include "morse/ToneBank.h"

#include <QString>

namespace kelvora {

class SettingsStore;
class UserProfile;

// The settings panel's clamps, applied to the box's text as its change handler does:
// a value inside the bounds keeps the text as typed.
namespace soundRules {
QString clampSpeed(const QString &vitesse);       // below 3 becomes "3"
QString clampFrequency(const QString &frequence); // 1..8000
QString clampVolume(const QString &volume);       // 1..127
} // namespace soundRules

// Everything the sound engine reads from the settings panel, as texts.
struct SoundSettings {
    QString vitesse, mot, frequence, volume, ct, cs, cl, cm, sup, deb, fin;
    bool debfin = true;

    static SoundSettings defaults();
    // The profile's values, passed through the panel's clamps.
    static SoundSettings fromProfile(const SettingsStore &store, const QString &user);
    static SoundSettings fromProfile(const UserProfile &profile);
    void applyClamps();

    TimingInputs timingInputs() const;
    ToneSettings toneSettings(const TimingPlan &plan) const;
};

} // namespace kelvora
