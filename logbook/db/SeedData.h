#pragma once
// The data a new logbook database starts with, shipped inside the program from data/:
// the DXCC prefix list converted from the country file cty.dat, and a starter beacon list.
#include "logbook/db/CtyParser.h"
#include "logbook/db/DbError.h"

#include <QList>
#include <QString>

class DbConnection;

struct BeaconSeed {
    QString beacon; // callsign with "/B"
    QString locator;
    QString qrg; // kHz
    QString equipment;
    QString mode;
};

namespace SeedData {
// The shipped country file, as text.
QString ctyText();
QList<DxccRow> dxccRows();
// The shipped beacon list (data/beacons.csv: beacon;Locator;qrg;Equipment;Mode, # comments).
QList<BeaconSeed> beacons();
QList<BeaconSeed> parseBeacons(const QString& csv, QString* error = nullptr);

// Fills dxccdata and PNT_Beacon on an open connection, inside the caller's transaction.
bool fill(DbConnection& connection, DbError* error = nullptr);
} // namespace SeedData
