#include "devices/rotator/RotatorController.h"

#include "core/Station.h"
#include "devices/lines/OutputLines.h"
#include "devices/link/StationPorts.h"
#include "devices/rotator/RotatorLog.h"

RotatorController::RotatorController(
    Station& station, StationPorts& ports, OutputLines& lines, QObject* parent)
    : QObject(parent)
    , station_(station)
    , ports_(ports)
    , lines_(lines)
    , pulser_(lines)
{
}

SerialLink& RotatorController::com4() const
{
    return ports_.com(4);
}

QString RotatorController::Antennedrehen(const QString& text160)
{
    const QString text = Rotator::format000(text160.isEmpty() ? QStringLiteral("000") : text160);
    qCDebug(lcRotator) << "turning to" << text;
    com4().write(Rotator::setHeadingCommand(text));
    return text;
}

void RotatorController::sendSecondSetValue(const QString& text177)
{
    com4().write(Rotator::secondSetValueCommand(text177));
}

void RotatorController::turnLeft()
{
    com4().write(Rotator::TurnLeft);
}

void RotatorController::turnRight()
{
    com4().write(Rotator::TurnRight);
}

void RotatorController::Rotorstop_click()
{
    emit stopPressed();
    com4().write(Rotator::Stop);
}

std::optional<QString> RotatorController::queryHeading(SerialLink& com4)
{
    com4.write(Rotator::Query);
    const QByteArray reply = com4.readAll();
    if (reply.isEmpty())
        return std::nullopt;
    return Rotator::readBack(reply);
}

void RotatorController::setAuto(bool on)
{
    if (auto_ == on)
        return;
    auto_ = on;
    emit autoChanged(on);
}

void RotatorController::elevationPressed(bool up)
{
    setAuto(false); // before the motor starts, so the tick cannot pulse against the hand
    held_ = true;
    pulser_.cancel(); // a running pulse is off before the hand's motor starts
    const quint8 line = up ? OutputLines::UpLine : OutputLines::DownLine;
    lines_.UsbSetIODir(OutputLines::ModulePort, line, 1);
    if (!lines_.UsbSetIOState(OutputLines::ModulePort, line, 1))
        qCWarning(lcRotator) << "elevation" << (up ? "up" : "down") << "by hand refused";
    station_.hold = true;
}

void RotatorController::elevationReleased(bool up)
{
    station_.hold = false;
    held_ = false;
    lines_.UsbSetIOState(OutputLines::ModulePort, up ? OutputLines::UpLine : OutputLines::DownLine, 0);
}

void RotatorController::pulseUp()
{
    pulser_.pulse(OutputLines::UpLine, std::chrono::milliseconds(pulseLengthMs_));
}

void RotatorController::pulseDown()
{
    pulser_.pulse(OutputLines::DownLine, std::chrono::milliseconds(pulseLengthMs_));
}

void RotatorController::autoElevationStep(std::optional<double> elevation)
{
    if (auto_ && elevation && !held_) {
        switch (Rotator::autoElevation(*elevation)) {
        case Rotator::Pulse::Up:
            pulseUp();
            break;
        case Rotator::Pulse::Down:
            pulseDown();
            break;
        case Rotator::Pulse::None:
            break;
        }
    }
    emit autoDisplayChanged(Rotator::autoCaption(auto_), Rotator::autoColour(auto_));
}
