#include "playback/PushToTalkControl.h"

#include "settings/ChoiceLists.h"
#include "ui/SettingsWriter.h"
#include "ui/UserPrompts.h"
#include "core/Logging.h"
#include "audio/PttPortName.h"
#include "playback/PushToTalk.h"

#include <QAbstractButton>
#include <QComboBox>

namespace kelvora {

namespace {
const char *const portTip = "Numéro du port série qui commande le PTT";
}

PushToTalkControl::PushToTalkControl(const Controls &controls, std::unique_ptr<PushToTalk> port,
                                     const SettingsWriter &writer, UserPrompts &prompts,
                                     QObject *parent)
    : QObject(parent)
    , m_controls(controls)
    , m_port(std::move(port))
    , m_writer(writer)
    , m_prompts(prompts)
{
    connect(m_controls.portBox, &QComboBox::currentTextChanged, this,
            &PushToTalkControl::onPortBoxChanged);
    describePort();
}

PushToTalkControl::~PushToTalkControl() = default;

bool PushToTalkControl::isActive() const
{
    return m_controls.enable->isChecked();
}

bool PushToTalkControl::isOpen() const
{
    return m_port->isOpen();
}

void PushToTalkControl::openForPlay()
{
    if (isActive() && !m_port->isOpen())
        open(true, QStringLiteral("l'exercice est joué sans alternat."));
}

void PushToTalkControl::closeIfOpen()
{
    if (m_port->isOpen())
        m_port->close();
}

void PushToTalkControl::raise(bool userActed)
{
    if (isActive() && !m_port->isOpen())
        open(userActed, QStringLiteral("la correction est jouée sans alternat."));
}

void PushToTalkControl::lower()
{
    if (isActive())
        m_port->close();
}

void PushToTalkControl::restorePort(int portNumber)
{
    m_portNumber = portNumber;
    describePort();
}

void PushToTalkControl::onPortBoxChanged(const QString &text)
{
    // A restored profile sets the number itself, without the rules below.
    if (m_writer.isRestoring())
        return;
    // Set open again, not closed: the serial layer refuses, and says so.
    if (m_port->isOpen())
        open(true, QString());
    const QString clamped = choiceLists::clampPortNumber(text);
    if (clamped != text) {
        // The change this makes comes back here and sets the number.
        m_controls.portBox->setEditText(clamped);
        return;
    }
    m_portNumber = choiceLists::portNumberOf(text);
    describePort();
}

bool PushToTalkControl::open(bool userActed, const QString &consequence)
{
    if (m_port->open(m_portNumber))
        return true;
    QString message = m_port->errorString();
    if (!consequence.isEmpty())
        message += QStringLiteral(" — ") + consequence;
    report(message, userActed);
    return false;
}

void PushToTalkControl::report(const QString &message, bool userActed)
{
    qCWarning(lcPlayback) << message;
    if (userActed)
        m_prompts.message(m_controls.portBox->window(), message);
    else
        emit notice(message);
}

void PushToTalkControl::describePort()
{
    // Which device the number stands for on this system.
    m_controls.portBox->setToolTip(QString::fromUtf8(portTip) + QStringLiteral(" (")
                                   + PttPortName::description(m_portNumber) + u')');
}

} // namespace kelvora
