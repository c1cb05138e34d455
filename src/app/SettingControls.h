#pragma once

#include "app/UserSettings.h"


#include <array>
#include <string_view>

namespace kelvora::settingControls {

// The control that holds each key's live value, by object name.
struct Binding {
    SettingKey key;
    const char *control;
};

inline constexpr std::array bindings = {
    Binding{userKeys::delaimot, "delaimot"}, Binding{userKeys::vitesse, "VITESSE"},
    Binding{userKeys::mot, "MOT"},           Binding{userKeys::frequence, "FRE"},
    Binding{userKeys::volume, "VOL"},        Binding{userKeys::cdelai, "cdelai"},
    Binding{userKeys::ct, "CT"},             Binding{userKeys::cs, "CS"},
    Binding{userKeys::cl, "CL"},             Binding{userKeys::cm, "CM"},
    Binding{userKeys::grmin, "GRMIN"},       Binding{userKeys::grmax, "GRMAX"},
    Binding{userKeys::deb, "DEB"},           Binding{userKeys::fin, "FIN"},
    Binding{userKeys::sup, "SUP"},           Binding{userKeys::qrm10, "Q1"},
    Binding{userKeys::qrm20, "Q2"},          Binding{userKeys::qrm30, "Q3"},
    Binding{userKeys::nbgroup, "nbgroup"},   Binding{userKeys::activecom, "Activecom"},
    Binding{userKeys::ncom, "NCOM"},         Binding{userKeys::fcorrection, "Fcorrection"},
    Binding{userKeys::debfin, "debfin"},     Binding{userKeys::cache, "Check1"},
    Binding{userKeys::progress, "PROGRESS"}, Binding{userKeys::lasttable, "TABLES"},
};

// The control of a key; nullptr for the keys no single control holds (fichier1, colours).
constexpr const char *controlOf(const SettingKey &key)
{
    for (const Binding &b : bindings) {
        if (std::string_view(b.key.name) == std::string_view(key.name))
            return b.control;
    }
    return nullptr;
}

} // namespace kelvora::settingControls
