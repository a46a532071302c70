#pragma once
// The hub's rotator: the main window's RotatorController. Azimuth goes through Antennedrehen
// (the window's azimuth box shows it), elevation through the elevation motor, one pulse per
// tick towards the set value while the sensor's reading is away from it; a get answers the
// tick's read-back heading and the sensor's elevation.
#include "hub/RotatorBackend.h"

#include <QString>

#include <functional>
#include <optional>

class RotatorController;

class HubRotator : public RotatorBackend {
public:
    struct Window {
        std::function<QString()> readBack; // the heading text the tick shows ("075")
        std::function<std::optional<double>()> elevation; // the sensor's last reading
        std::function<void(const QString&)> showAzimuth; // into the azimuth box
    };

    HubRotator(RotatorController& rotator, Window window);

    double azimuth() const override;
    double elevation() const override;
    int setPosition(double azimuth, double elevation) override;
    int stop() override;
    int park() override;

    // The window's tick: at most one elevation pulse towards the set value.
    void tick();

private:
    RotatorController& rotator_;
    Window window_;
    std::optional<double> elevationTarget_;
    int pulsesLeft_ = 0;
};
