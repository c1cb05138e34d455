#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace kelvora::soundPresets {

// One assignment of a preset: the control's object name and the text it receives.
struct PresetValue {
    QString box;
    QString text;
    friend bool operator==(const PresetValue &, const PresetValue &) = default;
};

// The main window's progression box: the preset's character set goes there, not to
// a box of the settings panel.
inline constexpr const char *characterSetBox = "PROGRESS";
inline constexpr const char *examinationCharacterSet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.,?/+'<*";

// "Paramètres Examen", in the order the boxes are set: the order matters because each
// assignment runs that box's change rules.
QList<PresetValue> examination();
// The examination preset followed by a thinking-time coefficient of 3.
QList<PresetValue> handicapped();
// The fixed explanation shown beside the handicapped preset button.
QString handicappedSummary();

// The choice lists of the panel's drop-downs.
QStringList speedChoices();         // VITESSE: 5 .. 50
QStringList frequencyChoices();     // FRE: 200 .. 2000 by 25
QStringList volumeChoices();        // VOL: 0 .. 125 by 5
QStringList thinkingTimeChoices();  // SUP: 1, 1.1 .. 1.9, 2, 3, 4, 5
QStringList referenceWordChoices(); // MOT: PARIS, CODEX
QStringList groupLengthChoices();   // GRMIN, GRMAX: 1 .. 12

} // namespace kelvora::soundPresets
