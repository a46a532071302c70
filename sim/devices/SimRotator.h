#pragma once
// A simulated azimuth rotator controller: answers "AI1;" with its heading as three digits, turns
// towards an "AP1" target at a fixed rate, turns left on "AA;" and right on "AB;" until "ST;" or
// an end stop (0 and 360 degrees), and stores the "AW1" value.
#include "sim/devices/SimSerialDevice.h"

#include <optional>

class SimRotator : public SimSerialDevice {
public:
    enum class Motion { Stopped, ToTarget, Left, Right };

    explicit SimRotator(double degreesPerSecond = 4.0, double heading = 0.0);

    QByteArray receive(const QByteArray& bytes) override;
    QByteArray tick(int ms) override;
    QString stateLine() const override;

    double heading() const { return heading_; }
    std::optional<int> target() const { return target_; }
    Motion motion() const { return motion_; }
    static QString motionName(Motion motion);
    // The last "AW1" value, -1 before any.
    int storedValue() const { return stored_; }
    // The answer to "AI1;": the rounded heading as three digits and ";".
    QByteArray headingReply() const;

private:
    QByteArray command(QByteArray text);

    double rate_;
    double heading_;
    std::optional<int> target_;
    Motion motion_ = Motion::Stopped;
    int stored_ = -1;
    QByteArray buffer_;
};
