#pragma once

#include <QString>

namespace kelvora {

class SettingsStore;

// A profile as the restore hands it to the controls, in the order it is read. Every
// value is the stored text, or the key's default when absent; a value that must be a
// number and is not reads as the key's default, so a hand-edited file cannot stop the
// program.
struct ProfileValues {
    QString delaimot, vitesse, mot, frequence, volume, cdelai;
    QString ct, cs, cl, cm;
    QString grmin, grmax, deb, fin, sup;
    int qrm10 = 0, qrm20 = 0, qrm30 = 0;
    QString nbgroup;
    QString fichier1;
    int activecom = 0;
    QString ncom;
    int ncomPort = 1; // the integer value of the port box's text
    int fcorrection = 1, debfin = 1, cache = 0;
    QString progress;
    quint32 color1 = 0, color2 = 0, color3 = 0; // 0xBBGGRR
    QString lasttable;                         // "mot" when stored empty
};

ProfileValues readProfile(const SettingsStore &store, const QString &user);
ProfileValues defaultProfile();

// Stored colours hold red in the low byte and blue in the high byte.
quint32 storedColour(int red, int green, int blue);
int redOf(quint32 stored);
int greenOf(quint32 stored);
int blueOf(quint32 stored);

} // namespace kelvora
