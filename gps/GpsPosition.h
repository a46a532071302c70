#pragma once
// The station's position as the receiver reports it: the hemisphere letters turn the parsers'
// unsigned degrees into signed ones (north and east positive), and a position becomes a
// Maidenhead locator.
#include <QString>
#include <QStringView>

#include <optional>

struct GpsPosition {
    double lat = 0.0; // degrees, north positive
    double lon = 0.0; // degrees, east positive
};

// "S" and "W" make the value negative, any other letter leaves it as it is.
double SignedDegrees(double value, QStringView hemisphere);

// A position only when the letters are "N"/"S" and "E"/"W" and the values lie on the globe.
std::optional<GpsPosition> PositionFrom(
    double lat, QStringView latHemisphere, double lon, QStringView lonHemisphere);

// The locator of the square holding the point, 4, 6, 8 or 10 characters, subsquare letters upper
// case ("JN58TD"). The north pole and the date line east of 180 degrees fall into the last square.
QString PositionToLocator(const GpsPosition& p, int length = 6);

// "48.117300° N  11.516667° E".
QString PositionText(const GpsPosition& p);
