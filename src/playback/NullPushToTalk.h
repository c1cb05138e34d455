#pragma once

#include "playback/PushToTalk.h"

namespace kelvora {

// No transmitter wired: every open succeeds and keys nothing.
class NullPushToTalk final : public PushToTalk {
public:
    bool open(int portNumber) override
    {
        m_open = true;
        m_portNumber = portNumber;
        return true;
    }
    void close() override { m_open = false; }
    bool isOpen() const override { return m_open; }
    int portNumber() const override { return m_portNumber; }
    QString errorString() const override { return QString(); }

private:
    bool m_open = false;
    int m_portNumber = 0;
};

} // namespace kelvora
