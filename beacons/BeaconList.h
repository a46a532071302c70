#pragma once
// The beacon list on the logbook database: the list query with its search, sort and name
// filter (after the schema check) and the save of a new entry. Each action opens its own
// recordset; failures come back as a DbError.
#include "logbook/db/DbError.h"
#include "logbook/db/Recordset.h"

#include <QString>

namespace BeaconList {

// The texts of one list load: SQL, sort ("qrg  asc " or "beacon  asc ") and filter.
struct Query {
    QString sql;
    QString sort;
    QString filter;
};
// `search`: the BeSearch text, a name prefix used as a LIKE pattern as it stands ("%" and "_"
// work), without regard to case in every alphabet; `byQrg`: BanCoun pressed; `nameFilter`:
// empty or "%/b%".
Query query(const QString& search, bool byQrg, const QString& nameFilter);

struct Loaded {
    Recordset rs; // open, with sort and filter, rows read
    DbError error;
};
// The schema check (logtab at 31 columns, PNT_Beacon at 8), then the list query.
Loaded load(const QString& connection, const QString& search, bool byQrg, const QString& nameFilter);

struct NewBeacon {
    QString beacon;
    QString qrg;
    QString locator;
    QString equipment;
};
// Appends the entry to PNT_Beacon; an empty name is stored as an empty text.
DbError save(const QString& connection, const NewBeacon& entry);

// txtQrgB's preset for a new entry: the band pattern without its last character ("144%" -> "144").
QString presetQrg(const QString& bandPattern);

} // namespace BeaconList
