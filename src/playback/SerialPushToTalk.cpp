#include "playback/SerialPushToTalk.h"

#include "core/Logging.h"
#include "audio/PttPortName.h"

namespace kelvora {

SerialPushToTalk::SerialPushToTalk() = default;

SerialPushToTalk::~SerialPushToTalk()
{
    close();
}

QString SerialPushToTalk::openFailureMessage(int portNumber, const QString &reason)
{
    return QStringLiteral("Impossible d'ouvrir le port %1 (%2) : %3")
        .arg(PttPortName::label(portNumber), PttPortName::devicePath(portNumber), reason);
}

bool SerialPushToTalk::open(int portNumber)
{
    m_error.clear();
    if (m_port.isOpen()) {
        m_error = openFailureMessage(portNumber, QStringLiteral("le port est déjà ouvert"));
    } else if (portNumber < 1) {
        m_error = openFailureMessage(portNumber, QStringLiteral("numéro de port invalide"));
    } else {
        m_port.setPortName(PttPortName::devicePath(portNumber));
        if (m_port.open(QIODevice::ReadWrite)) {
            // The transmitter may be wired to either line. A pseudo-terminal refuses the
            // modem ioctls: the port is open all the same, which is what keys.
            m_port.setDataTerminalReady(true);
            m_port.setRequestToSend(true);
            m_port.clearError();
            m_portNumber = portNumber;
            qCInfo(lcPlayback) << "push-to-talk keyed on" << m_port.portName();
            return true;
        }
        m_error = openFailureMessage(portNumber, m_port.errorString());
        m_port.clearError();
    }
    qCWarning(lcPlayback) << m_error;
    return false;
}

void SerialPushToTalk::close()
{
    if (!m_port.isOpen())
        return;
    m_port.setDataTerminalReady(false);
    m_port.setRequestToSend(false);
    m_port.close();
    m_port.clearError();
    qCInfo(lcPlayback) << "push-to-talk released";
}

bool SerialPushToTalk::isOpen() const
{
    return m_port.isOpen();
}

int SerialPushToTalk::portNumber() const
{
    return m_portNumber;
}

QString SerialPushToTalk::errorString() const
{
    return m_error;
}

} // namespace kelvora
