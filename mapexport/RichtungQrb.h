#pragma once
// The logbook's locator procedure: home coordinates from the own locator, the contact's
// coordinate text, the outline of its 2-by-1-degree square, and distance and bearing.
#include "logbook/entry/MapPosition.h"

#include <QString>

class Station;
struct LogMapFields;

// W, S, E, N of the square holding a point: the longitude in single precision, made even
// by taking one off an odd whole part (W = -4, E = -2 for both -2.5 and -3.4).
struct SquareBounds {
    int west = 0;
    int south = 0;
    int east = 0;
    int north = 0;
};
SquareBounds SquareAround(double lon, double lat);
// The five-point ring of SquareAround (the text stored in GEpoly).
QString SquareOutline(double lon, double lat);

// Own locator: setting 6 (the caption of MyGrid), completed with "HH" when it has four
// characters; it becomes station.homeCoords, which stays empty when it is not valid (distance
// and bearing are then 0). Contact locator: `locatorBox`, or the
// pass-over square when fields.passOver is set. When the contact locator is not valid the
// procedure ends there (false): outline, distance and pass-over flag stay as they were.
// Otherwise station.coordText, fields.outline, distance and bearing are updated and the
// pass-over flag is cleared.
bool RichtungQRB(Station& station, LogMapFields& fields, const QString& locatorBox);
