#include "app/UserProfile.h"

#include "app/SettingsStore.h"
#include "app/UserSettings.h"

#include <algorithm>
#include <cmath>
#include <functional>

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

using Reader = std::function<QString(const SettingKey &)>;

int storedFlag(const Reader &read, const SettingKey &key)
{
    return int(storedNumber(read(key), key.defaultValue));
}

quint32 storedColourValue(const Reader &read, const SettingKey &key)
{
    const qint64 v = storedNumber(read(key), key.defaultValue);
    if (v < 0 || v > 0xFFFFFF)
        return quint32(QByteArray(key.defaultValue).toLongLong());
    return quint32(v);
}

ProfileValues profileFrom(const Reader &read)
{
    namespace k = userKeys;
    ProfileValues p;
    p.delaimot = read(k::delaimot);
    p.vitesse = read(k::vitesse);
    p.mot = read(k::mot);
    p.frequence = read(k::frequence);
    p.volume = read(k::volume);
    p.cdelai = read(k::cdelai);
    p.ct = read(k::ct);
    p.cs = read(k::cs);
    p.cl = read(k::cl);
    p.cm = read(k::cm);
    p.grmin = read(k::grmin);
    p.grmax = read(k::grmax);
    p.deb = read(k::deb);
    p.fin = read(k::fin);
    p.sup = read(k::sup);
    p.qrm10 = storedFlag(read, k::qrm10);
    p.qrm20 = storedFlag(read, k::qrm20);
    p.qrm30 = storedFlag(read, k::qrm30);
    p.nbgroup = read(k::nbgroup);
    p.fichier1 = read(k::fichier1);
    p.activecom = storedFlag(read, k::activecom);
    p.ncom = read(k::ncom);
    p.ncomPort = int(std::clamp<qint64>(storedNumber(p.ncom, k::ncom.defaultValue), 0, 255));
    p.fcorrection = storedFlag(read, k::fcorrection);
    p.debfin = storedFlag(read, k::debfin);
    p.cache = storedFlag(read, k::cache);
    p.progress = read(k::progress);
    p.color1 = storedColourValue(read, k::color1);
    p.color2 = storedColourValue(read, k::color2);
    p.color3 = storedColourValue(read, k::color3);
    p.lasttable = read(k::lasttable);
    if (p.lasttable.isEmpty())
        p.lasttable = QStringLiteral("mot");
    return p;
}

} // namespace

ProfileValues readProfile(const SettingsStore &store, const QString &user)
{
    return profileFrom([&](const SettingKey &key) { return store.value(user, key); });
}

ProfileValues defaultProfile()
{
    return profileFrom([](const SettingKey &key) { return QString::fromUtf8(key.defaultValue); });
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
