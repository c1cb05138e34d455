#include "audio/PlayTime.h"

namespace kelvora::playTime {

QString format(qint64 ms)
{
    const qint64 seconds = ms / 1000;
    const qint64 thousandths = ms - 1000 * seconds;
    const qint64 minutes = seconds / 60;
    return QStringLiteral("%1'%2''%3")
        .arg(minutes)
        .arg(seconds - 60 * minutes, 2, 10, QLatin1Char('0'))
        .arg(thousandths, 3, 10, QLatin1Char('0'));
}

QString lengthAndPosition(qint64 lengthMs, qint64 positionMs)
{
    return format(lengthMs) + QStringLiteral(" - ") + format(positionMs);
}

} // namespace kelvora::playTime
