#pragma once
// The map columns of a beacon record (GEgridXY, GEdata), decided from the record alone: GD
// writes them for the listed beacons, and a new database's starter beacons get them at once.
#include <QString>

// "Beacon:" + beacon + " QRG: " + qrg + " kHz " + " LOC:" + locator + " Comment:" + equipment + " ".
QString BeaconGeData(
    const QString& beacon, const QString& qrg, const QString& locator, const QString& equipment);

// Position of a locator as the map stores it; a 4-character square is completed with "HH"
// as the logbook does. Empty for a locator that is not valid (no point is drawn for it).
QString BeaconGridXY(const QString& locator);
