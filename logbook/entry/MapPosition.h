#pragma once
// What the window's locator procedure (RichtungQRB) leaves for one contact locator: the
// coordinate text for the map, the distance and the bearing. The save, the map data completion
// and the ADIF import all take it through LocatorProcedure, so they share one computation.
#include <QString>

#include <functional>

struct MapPosition {
    QString coordText; // "longitude,latitude"
    float distanceKm = 0.0f;
    float bearing = 0.0f;
};

// Runs the locator procedure on a contact locator: true with `position` replaced when the
// locator is valid; false with `position` left as it was when it is not.
using LocatorProcedure = std::function<bool(const QString& locator, MapPosition& position)>;
