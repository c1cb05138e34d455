#include "morse/SoundSettings.h"

#include "app/SettingsStore.h"
#include "app/UserSettings.h"
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

bool flag(const QString &stored, bool defaultValue)
{
    bool ok = false;
    const double v = stored.trimmed().toDouble(&ok);
    if (!ok)
        return defaultValue;
    return v == 1;
}

} // namespace soundRules

SoundSettings SoundSettings::defaults()
{
    namespace k = userKeys;
    SoundSettings s;
    s.vitesse = k::vitesse.defaultValue;
    s.mot = k::mot.defaultValue;
    s.frequence = k::frequence.defaultValue;
    s.volume = k::volume.defaultValue;
    s.ct = k::ct.defaultValue;
    s.cs = k::cs.defaultValue;
    s.cl = k::cl.defaultValue;
    s.cm = k::cm.defaultValue;
    s.sup = k::sup.defaultValue;
    s.deb = k::deb.defaultValue;
    s.fin = k::fin.defaultValue;
    s.debfin = soundRules::flag(k::debfin.defaultValue, true);
    return s;
}

SoundSettings SoundSettings::fromProfile(const SettingsStore &store, const QString &user)
{
    namespace k = userKeys;
    SoundSettings s;
    s.vitesse = store.value(user, k::vitesse);
    s.mot = store.value(user, k::mot);
    s.frequence = store.value(user, k::frequence);
    s.volume = store.value(user, k::volume);
    s.ct = store.value(user, k::ct);
    s.cs = store.value(user, k::cs);
    s.cl = store.value(user, k::cl);
    s.cm = store.value(user, k::cm);
    s.sup = store.value(user, k::sup);
    s.deb = store.value(user, k::deb);
    s.fin = store.value(user, k::fin);
    s.debfin = soundRules::flag(store.value(user, k::debfin), true);
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
