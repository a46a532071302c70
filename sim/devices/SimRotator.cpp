#include "sim/devices/SimRotator.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLowStop = 0.0;
constexpr double kHighStop = 360.0;
constexpr int kLongestCommand = 32;

// The digits after a three-letter command ("AP1045" -> 45); nothing when there are none.
std::optional<int> number(const QByteArray& digits)
{
    if (digits.isEmpty() || digits.size() > 6)
        return std::nullopt;
    for (char c : digits)
        if (c < '0' || c > '9')
            return std::nullopt;
    return digits.toInt();
}

} // namespace

SimRotator::SimRotator(double degreesPerSecond, double heading)
    : rate_(degreesPerSecond)
    , heading_(std::clamp(heading, kLowStop, kHighStop))
{
}

QString SimRotator::motionName(Motion motion)
{
    switch (motion) {
    case Motion::ToTarget:
        return QStringLiteral("target");
    case Motion::Left:
        return QStringLiteral("left");
    case Motion::Right:
        return QStringLiteral("right");
    case Motion::Stopped:
        break;
    }
    return QStringLiteral("stopped");
}

QByteArray SimRotator::receive(const QByteArray& bytes)
{
    buffer_ += bytes;
    QByteArray out;
    for (int end = buffer_.indexOf(';'); end >= 0; end = buffer_.indexOf(';')) {
        out += command(buffer_.left(end));
        buffer_.remove(0, end + 1);
    }
    if (buffer_.size() > kLongestCommand)
        buffer_.clear(); // noise without a terminator
    return out;
}

QByteArray SimRotator::command(QByteArray text)
{
    // "AP1045" CR ";" carries a carriage return before its terminator; blanks mean nothing.
    text.replace('\r', QByteArray()).replace('\n', QByteArray());
    text = text.trimmed().toUpper();
    const QByteArray name = text.left(3);
    if (name == "AI1")
        return headingReply();
    if (name == "AP1") {
        if (const auto value = number(text.mid(3))) {
            target_ = std::clamp(*value, int(kLowStop), int(kHighStop));
            motion_ = Motion::ToTarget;
        }
    } else if (name == "AM1") {
        if (target_)
            motion_ = Motion::ToTarget;
    } else if (name == "AW1") {
        if (const auto value = number(text.mid(3)))
            stored_ = *value;
    } else if (text == "AA") {
        motion_ = Motion::Left;
    } else if (text == "AB") {
        motion_ = Motion::Right;
    } else if (text == "ST") {
        motion_ = Motion::Stopped;
    }
    return {};
}

QByteArray SimRotator::tick(int ms)
{
    const double step = rate_ * ms / 1000.0;
    switch (motion_) {
    case Motion::ToTarget: {
        const double goal = *target_;
        if (std::abs(goal - heading_) <= step) {
            heading_ = goal;
            motion_ = Motion::Stopped;
        } else {
            heading_ += goal > heading_ ? step : -step;
        }
        break;
    }
    case Motion::Left:
        heading_ = std::max(kLowStop, heading_ - step);
        if (heading_ == kLowStop)
            motion_ = Motion::Stopped;
        break;
    case Motion::Right:
        heading_ = std::min(kHighStop, heading_ + step);
        if (heading_ == kHighStop)
            motion_ = Motion::Stopped;
        break;
    case Motion::Stopped:
        break;
    }
    return {};
}

QByteArray SimRotator::headingReply() const
{
    const int degrees = int(std::lround(heading_)) % 360;
    return QByteArray::number(degrees).rightJustified(3, '0') + ';';
}

QString SimRotator::stateLine() const
{
    return QStringLiteral("heading=%1 target=%2 motion=%3 aw=%4 reply=%5")
        .arg(heading_, 0, 'f', 1)
        .arg(target_ ? QString::number(*target_) : QStringLiteral("-"))
        .arg(motionName(motion_))
        .arg(stored_)
        .arg(QString::fromLatin1(headingReply().chopped(1)));
}
