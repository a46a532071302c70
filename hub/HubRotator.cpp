#include "hub/HubRotator.h"

#include "devices/rotator/RotatorController.h"
#include "hub/HamlibCommands.h"

#include <cmath>

namespace {
// Close enough: the motor moves in pulses.
constexpr double ElevationTolerance = 1.0;
// A minute of ticks: a motor that does not move the reading is not driven for ever.
constexpr int MaxPulses = 300;
} // namespace

HubRotator::HubRotator(RotatorController& rotator, Window window)
    : rotator_(rotator)
    , window_(std::move(window))
{
}

double HubRotator::azimuth() const
{
    const QString text = window_.readBack ? window_.readBack() : QString();
    qsizetype digits = 0;
    while (digits < text.size() && text[digits].isDigit())
        ++digits;
    return text.left(digits).toInt();
}

double HubRotator::elevation() const
{
    if (const auto e = window_.elevation ? window_.elevation() : std::nullopt)
        return *e;
    return elevationTarget_.value_or(0.0);
}

int HubRotator::setPosition(double azimuth, double elevation)
{
    // The controller takes whole degrees 0..359; clients may count from -180 or past 360.
    const int whole = ((static_cast<int>(std::lround(azimuth)) % 360) + 360) % 360;
    const QString text = rotator_.Antennedrehen(QString::number(whole));
    if (window_.showAzimuth)
        window_.showAzimuth(text);
    elevationTarget_ = elevation;
    pulsesLeft_ = MaxPulses;
    return Hamlib::Ok;
}

int HubRotator::stop()
{
    elevationTarget_.reset();
    rotator_.Rotorstop_click();
    return Hamlib::Ok;
}

int HubRotator::park()
{
    return setPosition(0, 0);
}

void HubRotator::tick()
{
    if (!elevationTarget_ || rotator_.isAuto())
        return;
    const auto reading = window_.elevation ? window_.elevation() : std::nullopt;
    if (!reading)
        return;
    const double diff = *elevationTarget_ - *reading;
    if (std::abs(diff) <= ElevationTolerance || pulsesLeft_-- <= 0)
        elevationTarget_.reset();
    else if (diff > 0)
        rotator_.pulseUp();
    else
        rotator_.pulseDown();
}
