#pragma once

#include <QString>

namespace kelvora {

// The transmitter's push-to-talk line: keyed while the port is open, nothing is ever
// written or read.
class PushToTalk {
public:
    virtual ~PushToTalk() = default;

    // Opens port `portNumber` (1 and up), which keys the transmitter. Opening a port that
    // is already open is refused, as the serial layer does; errorString() then names the
    // port and the system's reason in French.
    virtual bool open(int portNumber) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    virtual int portNumber() const = 0; // of the last successful open, 0 before
    virtual QString errorString() const = 0;
};

} // namespace kelvora
