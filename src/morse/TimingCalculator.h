#pragma once

#include "morse/TimingPlan.h"

#include <QString>

#include <limits>

namespace kelvora {

class PatternLookup;

// The boxes of the settings panel the calculation reads, as the user typed them.
struct TimingInputs {
    QString vitesse; // reference words per minute
    QString mot;     // reference word
    QString ct;      // dots per dash
    QString cs;      // dots between the elements of a character
    QString cl;      // dots between characters
    QString cm;      // dots between words
};

// The "Timing" grid. A field the calculation did not reach (it stopped on an error)
// is NaN: its box keeps what it showed.
struct TimingGrid {
    static constexpr double unset = std::numeric_limits<double>::quiet_NaN();
    double NP = unset, NT = unset, ES = unset, EL = unset, EM = unset;
    double VP = unset, VT = unset, VS = unset, VL = unset, VM = unset;
    double TT = unset;
};

struct TimingResult {
    bool ok = false;
    QString error;        // French; the previous plan stays in force
    QString trimmedWord;  // written back into the reference word box
    TimingGrid grid;
    QString information;  // "Soit 97 Millièmes de secondes pour un point ..."
    TimingPlan plan;      // valid only when ok
};

// CALCCONFIG: from the speed, the reference word and the dot counts to the dot length
// in whole milliseconds, the grid of counts and the plan the synthesiser uses.
TimingResult CALCCONFIG(const TimingInputs &inputs, PatternLookup &lookup);

} // namespace kelvora
