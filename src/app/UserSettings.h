#pragma once

#include <QString>

#include <array>

namespace kelvora {

// One per-user key with the default its readers give.
struct SettingKey {
    const char *name;
    const char *defaultValue;
};

// Every key of a profile, with its default, in the order the restore reads them.
namespace userKeys {
inline constexpr SettingKey delaimot{"delaimot", "1000"};
inline constexpr SettingKey vitesse{"vitesse", "12"};
inline constexpr SettingKey mot{"mot", "PARIS"};
inline constexpr SettingKey frequence{"frequence", "700"};
inline constexpr SettingKey volume{"volume", "127"};
inline constexpr SettingKey cdelai{"cdelai", "1"};
inline constexpr SettingKey ct{"ct", "3"};
inline constexpr SettingKey cs{"cs", "1"};
inline constexpr SettingKey cl{"cl", "3"};
inline constexpr SettingKey cm{"cm", "9"};
inline constexpr SettingKey grmin{"grmin", "5"};
inline constexpr SettingKey grmax{"grmax", "5"};
inline constexpr SettingKey deb{"deb", "VVV"};
inline constexpr SettingKey fin{"fin", "+"};
inline constexpr SettingKey sup{"sup", "1"};
inline constexpr SettingKey qrm10{"qrm10", "0"};
inline constexpr SettingKey qrm20{"qrm20", "0"};
inline constexpr SettingKey qrm30{"qrm30", "0"};
inline constexpr SettingKey nbgroup{"nbgroup", "36"};
inline constexpr SettingKey fichier1{"fichier1", ""};
inline constexpr SettingKey activecom{"activecom", "0"};
inline constexpr SettingKey ncom{"ncom", "1"};
inline constexpr SettingKey fcorrection{"fcorrection", "1"};
inline constexpr SettingKey debfin{"debfin", "1"};
inline constexpr SettingKey cache{"cache", "0"};
inline constexpr SettingKey progress{"progress", "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*"};
inline constexpr SettingKey color1{"color1", "16711680"};
inline constexpr SettingKey color2{"color2", "16777215"};
inline constexpr SettingKey color3{"color3", "16711680"};
inline constexpr SettingKey lasttable{"lasttable", "mot"};

inline constexpr std::array all = {
    delaimot, vitesse, mot, frequence, volume, cdelai, ct, cs, cl, cm, grmin, grmax, deb, fin, sup,
    qrm10, qrm20, qrm30, nbgroup, fichier1, activecom, ncom, fcorrection, debfin, cache, progress,
    color1, color2, color3, lasttable,
};

// "Mémoriser ces paramètres" writes these, in this order.
inline constexpr std::array memorised = {
    grmin, grmax, vitesse, mot, frequence, volume, ct, cs, cl, cm, deb, fin, sup, nbgroup, ncom,
    activecom, cdelai,
};
} // namespace userKeys

inline constexpr const char *defaultUserName = "défaut";
inline constexpr const char *firstUseMarker = "parametres";

} // namespace kelvora
