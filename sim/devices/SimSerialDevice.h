#pragma once
// One simulated serial device as a pure state machine: the bytes the program sends go in, the
// device's answer comes out, and tick() lets time pass (slewing, drift, periodic output). No
// I/O of its own; kestrel-sim binds it to a pseudo-terminal.
#include <QByteArray>
#include <QString>

class SimSerialDevice {
public:
    virtual ~SimSerialDevice() = default;

    // Bytes from the program (any split); returns what the device answers, maybe nothing.
    virtual QByteArray receive(const QByteArray& bytes) = 0;
    // `ms` milliseconds have passed; returns what the device sends on its own.
    virtual QByteArray tick(int ms)
    {
        Q_UNUSED(ms);
        return {};
    }
    // The device's state as "key=value" pairs separated by blanks, for a person or a test.
    virtual QString stateLine() const = 0;
};
