#pragma once
// GD: prepares the map columns of the beacon records (under the name filter): GEgridXY
// gets the locator's position as "longitude,latitude", GEdata the one-line description.
// All records are stored in one transaction; the count or the failure is shown.
#include <QString>

class Station;

// "Beacon:" + beacon + " QRG: " + qrg + " kHz " + " LOC:" + locator + " Comment:" + equipment + " ".
QString BeaconGeData(
    const QString& beacon, const QString& qrg, const QString& locator, const QString& equipment);

// Position of a locator as the map stores it; a 4-character square is completed with "HH"
// as the logbook does. Empty for a locator that is not valid (no point is drawn for it).
QString BeaconGridXY(const QString& locator);

struct GdOutcome {
    bool ok = false;
    int records = 0; // records visited, a bad locator included
    QString message; // the text shown
};

// Runs GD on station.dbConnection and shows count + " Dataset from Tarnwick backup.mdB imported",
// or "No new Recorset available" when storing failed (then nothing is stored).
GdOutcome GD(Station& station, const QString& nameFilter);
