#pragma once
// Beam heading (QTF), reverse heading and distance (QRB) from the own locator to a target,
// and the one-line result the main window shows.
#include "geo/Locator.h"

#include <QString>

struct BearingResult {
    float qtf = 0.0f;     // degrees, single precision, not wrapped
    float reverse = 0.0f; // degrees
    double km = 0.0;      // distance on the station's ellipsoid
};

// Heading by the spherical arccos rule (mirrored for targets west along the shorter way when
// the distance lies between 0.5 km and 20003.5 km); distance on the ellipsoid with radii
// 6378.14 km and 6356.755 km.
BearingResult ComputeBearing(const GeoPoint& own, const GeoPoint& target);

// Geodesic distance in km on the ellipsoid above.
double EllipsoidDistanceKm(const GeoPoint& a, const GeoPoint& b);

// own + " -> " + target + " QTF: " + "##0.0" + degree sign + " / " + reverse + degree sign
// + " QRB: " + "#####0.00" + " km".
QString FormatBearingLine(const QString& own, const QString& target, const BearingResult& r);

// Whole degrees of QTF, fraction cut off (the rotator's target azimuth).
int WholeDegrees(float qtf);

class Station;

struct BearingOutcome {
    bool ok = false; // false: own locator or target invalid (its message shown)
    QString targetText;  // the box's new text (4 characters completed with "HH")
    QString line;        // the result line
    int wholeDegrees = 0;
    BearingResult result;
};

// The logic behind the main window's locator box: checks the own locator (Locator::own),
// completes a 4-character target, checks it, converts both locators (leaving the target's coordinate text in
// the station, the own position as home) and computes the result line and the whole-degree heading.
BearingOutcome ShowBearingAndDistance(Station& station, const QString& targetBox);
