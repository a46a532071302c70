#pragma once
// The data a new logbook database starts with, shipped inside the program from data/:
// the DXCC prefix list converted from the country file cty.csv, and a starter beacon list.
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
// The shipped country file (data/cty.csv), as text.
QString ctyText();
// The dxccdata rows of a country file in the cty.csv form.
QList<DxccRow> dxccRows(const QString& ctyCsv);
// The shipped beacon list (data/beacons.csv: beacon;Locator;qrg;Equipment;Mode, # comments).
QList<BeaconSeed> beacons();
QList<BeaconSeed> parseBeacons(const QString& csv, QString* error = nullptr);

// Fills dxccdata and PNT_Beacon on an open connection, inside the caller's transaction.
bool fill(DbConnection& connection, DbError* error = nullptr);
// Appends the rows to dxccdata (with entity number, zones and continent where the table has
// those columns), inside the caller's transaction.
bool fillDxcc(DbConnection& connection, const QList<DxccRow>& rows, DbError* error = nullptr);
} // namespace SeedData
