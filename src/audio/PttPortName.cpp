#include "audio/PttPortName.h"

namespace kelvora {

QString PttPortName::defaultTemplate()
{
    return QStringLiteral("/dev/ttyS%1");
}

QString PttPortName::devicePath(int portNumber)
{
    QString pattern = qEnvironmentVariable("KELVORA_PTT_DEVICE_TEMPLATE");
    if (pattern.isEmpty())
        pattern = defaultTemplate();
    // QString::arg would renumber the markers if only %2 is present; replace them by hand.
    pattern.replace(QLatin1String("%1"), QString::number(portNumber - 1));
    pattern.replace(QLatin1String("%2"), QString::number(portNumber));
    return pattern;
}

QString PttPortName::label(int portNumber)
{
    return QStringLiteral("COM%1").arg(portNumber);
}

QString PttPortName::description(int portNumber)
{
    return QStringLiteral("Port %1 = %2").arg(portNumber).arg(devicePath(portNumber));
}

} // namespace kelvora
