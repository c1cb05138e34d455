#pragma once

#include <QString>

#include <array>
#include <string_view>

namespace kelvora {

// How a stored text is read back. A value that must be a number and is not reads as
// the key's default, so that a hand-edited file cannot stop the program.
enum class SettingKind {
    Text,     // as stored
    NonEmpty, // as stored, the default when stored empty
    Number,   // as stored when it reads as a number, else the default
    Flag,     // a whole number, shown as its digits
    Colour,   // 0xBBGGRR as a whole number
};

// One per-user key: its name in the store, its default, the control that shows it
// (by object name; nullptr when no single control holds it) and how it is read.
struct SettingKey {
    const char *name;
    const char *defaultValue;
    const char *control;
    SettingKind kind = SettingKind::Text;

    QString key() const { return QString::fromUtf8(name); }
    QString defaultText() const { return QString::fromUtf8(defaultValue); }
    bool operator==(const SettingKey &other) const
    {
        return std::string_view(name) == std::string_view(other.name);
    }
};

// The one table of the profile's keys, in the order the restore reads them.
namespace userKeys {
using K = SettingKind;
inline constexpr SettingKey delaimot{"delaimot", "1000", "delaimot"};
inline constexpr SettingKey vitesse{"vitesse", "12", "VITESSE"};
inline constexpr SettingKey mot{"mot", "PARIS", "MOT"};
inline constexpr SettingKey frequence{"frequence", "700", "FRE"};
inline constexpr SettingKey volume{"volume", "127", "VOL"};
inline constexpr SettingKey cdelai{"cdelai", "1", "cdelai"};
inline constexpr SettingKey ct{"ct", "3", "CT"};
inline constexpr SettingKey cs{"cs", "1", "CS"};
inline constexpr SettingKey cl{"cl", "3", "CL"};
inline constexpr SettingKey cm{"cm", "9", "CM"};
inline constexpr SettingKey grmin{"grmin", "5", "GRMIN"};
inline constexpr SettingKey grmax{"grmax", "5", "GRMAX"};
inline constexpr SettingKey deb{"deb", "VVV", "DEB"};
inline constexpr SettingKey fin{"fin", "+", "FIN"};
inline constexpr SettingKey sup{"sup", "1", "SUP"};
inline constexpr SettingKey qrm10{"qrm10", "0", "Q1", K::Flag};
inline constexpr SettingKey qrm20{"qrm20", "0", "Q2", K::Flag};
inline constexpr SettingKey qrm30{"qrm30", "0", "Q3", K::Flag};
inline constexpr SettingKey nbgroup{"nbgroup", "36", "nbgroup"};
inline constexpr SettingKey fichier1{"fichier1", "", nullptr};
inline constexpr SettingKey activecom{"activecom", "0", "Activecom", K::Flag};
inline constexpr SettingKey ncom{"ncom", "1", "NCOM", K::Number};
inline constexpr SettingKey fcorrection{"fcorrection", "1", "Fcorrection", K::Flag};
inline constexpr SettingKey debfin{"debfin", "1", "debfin", K::Flag};
inline constexpr SettingKey cache{"cache", "0", "Check1", K::Flag};
inline constexpr SettingKey progress{"progress", "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*", "PROGRESS"};
inline constexpr SettingKey color1{"color1", "16711680", nullptr, K::Colour};
inline constexpr SettingKey color2{"color2", "16777215", nullptr, K::Colour};
inline constexpr SettingKey color3{"color3", "16711680", nullptr, K::Colour};
inline constexpr SettingKey lasttable{"lasttable", "mot", "TABLES", K::NonEmpty};

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
