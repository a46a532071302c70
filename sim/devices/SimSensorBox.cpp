#include "sim/devices/SimSensorBox.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kElevationMid = 750.0;
constexpr double kElevationSwing = 450.0;
constexpr double kElevationPeriodMs = 180000.0;
constexpr double kTemperatureMid = 18.0;
constexpr double kTemperatureSwing = 3.0;
constexpr double kTemperaturePeriodMs = 600000.0;

void putWord(QByteArray& frame, int at, int value)
{
    frame[at] = char((value >> 8) & 0xff);
    frame[at + 1] = char(value & 0xff);
}

} // namespace

int SimSensorBox::elevationThousandths() const
{
    const double phase = 2.0 * std::numbers::pi * double(elapsedMs_) / kElevationPeriodMs;
    return int(std::lround(kElevationMid + kElevationSwing * std::sin(phase)));
}

int SimSensorBox::temperature() const
{
    const double phase = 2.0 * std::numbers::pi * double(elapsedMs_) / kTemperaturePeriodMs;
    return int(std::lround(kTemperatureMid + kTemperatureSwing * std::sin(phase)));
}

QByteArray SimSensorBox::frame() const
{
    QByteArray f(FrameSize, '\0');
    f[0] = char(0x7e);
    f[1] = char(0x01);
    f[2] = char(0x87);
    f[3] = char(FrameSize);
    putWord(f, 4, sequence_ & 0xffff);
    putWord(f, 6, 1380);
    const int elevation = elevationThousandths();
    putWord(f, 8, 2048 + elevation / 2);
    f[10] = char(0x01);
    putWord(f, 11, elevation);
    putWord(f, 13, 652);
    f[15] = char(temperature() & 0xff);
    return f;
}

QByteArray SimSensorBox::receive(const QByteArray& bytes)
{
    buffer_ += bytes;
    QByteArray out;
    for (int at = buffer_.indexOf(Query); at >= 0; at = buffer_.indexOf(Query)) {
        out += frame();
        ++sequence_;
        buffer_.remove(0, at + Query.size());
    }
    // Keep only what could still begin a query split across reads.
    if (buffer_.size() > Query.size() - 1)
        buffer_ = buffer_.right(Query.size() - 1);
    return out;
}

QByteArray SimSensorBox::tick(int ms)
{
    elapsedMs_ += ms;
    return {};
}

QString SimSensorBox::stateLine() const
{
    return QStringLiteral("elevation=%1 temperature=%2 replies=%3")
        .arg(elevationThousandths())
        .arg(temperature())
        .arg(sequence_);
}
