#include "morse/SoundSettings.h"

#include "app/UserProfile.h"
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
    return fromProfile(defaultProfile());
}

SoundSettings SoundSettings::fromProfile(const SettingsStore &store, const QString &user)
{
    return fromProfile(readProfile(store, user));
}

SoundSettings SoundSettings::fromProfile(const ProfileValues &p)
{
    SoundSettings s;
    s.vitesse = p.vitesse;
    s.mot = p.mot;
    s.frequence = p.frequence;
    s.volume = p.volume;
    s.ct = p.ct;
    s.cs = p.cs;
    s.cl = p.cl;
    s.cm = p.cm;
    s.sup = p.sup;
    s.deb = p.deb;
    s.fin = p.fin;
    s.debfin = p.debfin == 1;
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
