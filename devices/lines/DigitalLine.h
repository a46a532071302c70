#pragma once
// One digital output of the station (CW key, elevation motor up or down). Backends accept calls
// from any thread: the keyer drives its line from its own thread while the window drives the
// elevation lines.
#include <QString>

class DigitalLine {
public:
    virtual ~DigitalLine() = default;
    // Makes the line an output (a line claimed now starts low). False when the hardware refused.
    virtual bool setOutput() = 0;
    // true: on (key down, motor running). False when the hardware refused.
    virtual bool setState(bool on) = 0;
    // What serves the line, in the Kestrel.ini form ("none", "dtr:/dev/ttyUSB0", ...).
    virtual QString description() const = 0;
};
