#pragma once

#include <QString>

namespace kelvora {

// Where the serial port number N (COM N, 1 and up) lives on this system: /dev/ttyS(N-1).
// KELVORA_PTT_DEVICE_TEMPLATE overrides the pattern (%1 = N-1, %2 = N), so that a test
// or an unusual wiring (a USB adapter) can point the port elsewhere.
class PttPortName {
public:
    static QString devicePath(int portNumber);
    static QString label(int portNumber); // "COM3", the name the user chose the port by
    // "Port 3 = /dev/ttyS2": which device the number stands for.
    static QString description(int portNumber);
    static QString defaultTemplate();
};

} // namespace kelvora
