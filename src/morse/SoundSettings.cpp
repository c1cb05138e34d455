#include "morse/SoundSettings.h"

#include "settings/UserProfile.h"

#include <utility>
#include "core/Numbers.h"

namespace kelvora {

namespace soundRules {

namespace {
QString clamp(const QString &text, double low, double high, const QString &lowText,
              const QString &highText)
{
    const double v = numbers::leadingNumber(text);
    if (v > high)
        return highText;
    if (v < low)
        return lowText;
    return text;
}
} // namespace

QString clampSpeed(const QString &vitesse)
{
    const double v = numbers::leadingNumber(vitesse);
    return v < 3 ? QStringLiteral("3") : vitesse;
}

QString clampFrequency(const QString &frequence)
{
    return clamp(frequence, 1, 8000, QStringLiteral("1"), QStringLiteral("8000"));
}

QString clampVolume(const QString &volume)
{
    return clamp(volume, 1, 127, QStringLiteral("1"), QStringLiteral("127"));
}

} // namespace soundRules

SoundSettings SoundSettings::defaults()
{
    return fromProfile(UserProfile::defaults());
}

SoundSettings SoundSettings::fromProfile(const SettingsStore &store, const QString &user)
{
    return fromProfile(UserProfile::read(store, user));
}

SoundSettings SoundSettings::fromProfile(const UserProfile &p)
{
    namespace k = userKeys;
    SoundSettings s;
    const std::pair<const SettingKey &, QString SoundSettings::*> texts[] = {
        {k::vitesse, &SoundSettings::vitesse}, {k::mot, &SoundSettings::mot},
        {k::frequence, &SoundSettings::frequence}, {k::volume, &SoundSettings::volume},
        {k::ct, &SoundSettings::ct}, {k::cs, &SoundSettings::cs},
        {k::cl, &SoundSettings::cl}, {k::cm, &SoundSettings::cm},
        {k::sup, &SoundSettings::sup}, {k::deb, &SoundSettings::deb},
        {k::fin, &SoundSettings::fin},
    };
    for (const auto &[key, member] : texts)
        s.*member = p.text(key);
    s.debfin = p.number(k::debfin) == 1;
    s.applyClamps();
    return s;
}

void SoundSettings::applyClamps()
{
    vitesse = soundRules::clampSpeed(vitesse);
    frequence = soundRules::clampFrequency(frequence);
    volume = soundRules::clampVolume(volume);
}

TimingInputs SoundSettings::timingInputs() const
{
    return {vitesse, mot, ct, cs, cl, cm};
}

ToneSettings SoundSettings::toneSettings(const TimingPlan &plan) const
{
    return {plan, volume, frequence, sup};
}

} // namespace kelvora
