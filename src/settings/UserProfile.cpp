#include "settings/UserProfile.h"

#include "settings/SettingsStore.h"

#include <algorithm>
#include <cmath>

namespace kelvora {

namespace {

// A whole number stored as text; the default when the text is not a number.
qint64 storedNumber(const QString &text, const char *defaultValue)
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v) || std::fabs(v) > 9.0e15)
        return QByteArray(defaultValue).toLongLong();
    // Whole-number conversion of the program rounds half to even.
    return qint64(std::nearbyint(v));
}

QString readAs(const SettingKey &key, const QString &stored)
{
    switch (key.kind) {
    case SettingKind::Text:
        return stored;
    case SettingKind::NonEmpty:
        return stored.isEmpty() ? key.defaultText() : stored;
    case SettingKind::Number: {
        bool ok = false;
        stored.trimmed().toDouble(&ok);
        return ok ? stored : key.defaultText();
    }
    case SettingKind::Flag:
        return QString::number(storedNumber(stored, key.defaultValue));
    case SettingKind::Colour: {
        const qint64 v = storedNumber(stored, key.defaultValue);
        return (v < 0 || v > 0xFFFFFF) ? key.defaultText() : QString::number(v);
    }
    }
    return stored;
}

} // namespace

UserProfile UserProfile::read(const SettingsStore &store, const QString &user)
{
    UserProfile p;
    for (const SettingKey &key : userKeys::all)
        p.m_texts.insert(key.key(), readAs(key, store.value(user, key)));
    return p;
}

UserProfile UserProfile::defaults()
{
    UserProfile p;
    for (const SettingKey &key : userKeys::all)
        p.m_texts.insert(key.key(), readAs(key, key.defaultText()));
    return p;
}

QString UserProfile::text(const SettingKey &key) const
{
    return m_texts.value(key.key(), key.defaultText());
}

qint64 UserProfile::number(const SettingKey &key) const
{
    return storedNumber(text(key), key.defaultValue);
}

int UserProfile::portNumber() const
{
    return int(std::clamp<qint64>(number(userKeys::ncom), 0, 255));
}

quint32 storedColour(int red, int green, int blue)
{
    return quint32(red & 0xFF) | (quint32(green & 0xFF) << 8) | (quint32(blue & 0xFF) << 16);
}

int redOf(quint32 stored)
{
    return int(stored & 0xFF);
}

int greenOf(quint32 stored)
{
    return int((stored >> 8) & 0xFF);
}

int blueOf(quint32 stored)
{
    return int((stored >> 16) & 0xFF);
}

} // namespace kelvora
