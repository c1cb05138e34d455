#include "app/UserProfile.h"

#include "app/SettingsStore.h"
#include "app/UserSettings.h"

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

int storedFlag(const SettingsStore &store, const QString &user, const SettingKey &key)
{
    return int(storedNumber(store.value(user, key), key.defaultValue));
}

quint32 storedColourValue(const SettingsStore &store, const QString &user, const SettingKey &key)
{
    const qint64 v = storedNumber(store.value(user, key), key.defaultValue);
    if (v < 0 || v > 0xFFFFFF)
        return quint32(QByteArray(key.defaultValue).toLongLong());
    return quint32(v);
}

} // namespace

ProfileValues readProfile(const SettingsStore &store, const QString &user)
{
    namespace k = userKeys;
    ProfileValues p;
    p.delaimot = store.value(user, k::delaimot);
    p.vitesse = store.value(user, k::vitesse);
    p.mot = store.value(user, k::mot);
    p.frequence = store.value(user, k::frequence);
    p.volume = store.value(user, k::volume);
    p.cdelai = store.value(user, k::cdelai);
    p.ct = store.value(user, k::ct);
    p.cs = store.value(user, k::cs);
    p.cl = store.value(user, k::cl);
    p.cm = store.value(user, k::cm);
    p.grmin = store.value(user, k::grmin);
    p.grmax = store.value(user, k::grmax);
    p.deb = store.value(user, k::deb);
    p.fin = store.value(user, k::fin);
    p.sup = store.value(user, k::sup);
    p.qrm10 = storedFlag(store, user, k::qrm10);
    p.qrm20 = storedFlag(store, user, k::qrm20);
    p.qrm30 = storedFlag(store, user, k::qrm30);
    p.nbgroup = store.value(user, k::nbgroup);
    p.fichier1 = store.value(user, k::fichier1);
    p.activecom = storedFlag(store, user, k::activecom);
    p.ncom = store.value(user, k::ncom);
    p.ncomPort = int(std::clamp<qint64>(storedNumber(p.ncom, k::ncom.defaultValue), 0, 255));
    p.fcorrection = storedFlag(store, user, k::fcorrection);
    p.debfin = storedFlag(store, user, k::debfin);
    p.cache = storedFlag(store, user, k::cache);
    p.progress = store.value(user, k::progress);
    p.color1 = storedColourValue(store, user, k::color1);
    p.color2 = storedColourValue(store, user, k::color2);
    p.color3 = storedColourValue(store, user, k::color3);
    p.lasttable = store.value(user, k::lasttable);
    if (p.lasttable.isEmpty())
        p.lasttable = QStringLiteral("mot");
    return p;
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
