#pragma once
// How the beacon panel reaches the rest of the main window without knowing its widgets.
// Every hook may stay unset; the panel then skips that step (aimAt falls back to computing
// the heading itself, without showing it).
#include "beacons/BeaconBand.h"

#include <QString>

#include <functional>
#include <optional>

struct BeaconHooks {
    // First step of every list load when the own callsign or locator (settings 5, 6) is empty:
    // show the settings dialog ("mnuInitial").
    std::function<void()> openSettings;
    // Second step of every list load: the rig's band option handler, once.
    std::function<void()> rigBandHandler;
    // A beacon was chosen: put `locator` into the window's `Locator` box and show bearing and
    // distance (`Richtung`, `Text160`). Returns the whole-degree heading, or nothing when the
    // locator was invalid ("Invalid Gridlocator:" has been shown then).
    std::function<std::optional<int>(const QString& locator)> aimAt;
    // The chosen row's band and frequency: switch `OptBandV` or `OptBandR` on when its qrg
    // began with a listed band, and let the rig take over the row's frequency.
    std::function<void(const BeaconTuning& tuning)> followBand;
    // The rotator's target after a valid locator: turn the antenna (`Antennedrehen`).
    std::function<void(int degrees)> turnTo;
};
