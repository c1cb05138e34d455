#pragma once

#include "playback/PushToTalk.h"

#include <QSerialPort>

namespace kelvora {

// Push-to-talk over a serial port: opening raises DTR and RTS, closing drops them.
// The line settings are the serial layer's defaults.
class SerialPushToTalk final : public PushToTalk {
public:
    SerialPushToTalk();
    ~SerialPushToTalk() override;

    bool open(int portNumber) override;
    void close() override;
    bool isOpen() const override;
    int portNumber() const override;
    QString errorString() const override;

    static QString openFailureMessage(int portNumber, const QString &reason);

private:
    QSerialPort m_port;
    int m_portNumber = 0;
    QString m_error;
};

} // namespace kelvora
