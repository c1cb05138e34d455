#pragma once

#include <QString>

// The time box of the exercise player.
namespace kelvora::playTime {

// m'ss''mmm: whole minutes, then seconds on two digits and thousandths on three
// ("0'04''250", "12'00''007").
QString format(qint64 ms);
// "length - position".
QString lengthAndPosition(qint64 lengthMs, qint64 positionMs);

} // namespace kelvora::playTime
