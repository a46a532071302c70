#pragma once
// GD: prepares the map columns of the beacon records (under the name filter): GEgridXY
// gets the locator's position as "longitude,latitude", GEdata the one-line description.
// All records are stored in one transaction; the count or the failure is shown.
#include "logbook/db/BeaconMapTexts.h"

#include <QString>

class Station;

struct GdOutcome {
    bool ok = false;
    int records = 0; // records visited, a bad locator included
    QString message; // the text shown
};

// Runs GD on station.dbConnection and shows count + " Dataset from Tarnwick backup.mdB imported",
// or "No new Recorset available" when storing failed (then nothing is stored).
GdOutcome GD(Station& station, const QString& nameFilter);
