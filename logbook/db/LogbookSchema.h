#pragma once
// The tables of the logbook database: the current layout a new file is made with, and the
// older layout (31-column logtab, 8-column PNT_Beacon with XCoord/YCoord) that the
// map-column upgrade brings up to date. PRAGMA user_version records the schema version (see
// SchemaMigration).
#include <QStringList>

namespace LogbookSchema {
constexpr int LogtabColumnsOld = 31;
constexpr int LogtabColumns = 34;
constexpr int BeaconColumnsOld = 8;
constexpr int BeaconColumns = 9;

// CREATE TABLE/INDEX statements of the current schema version (logtab, PNT_Beacon, dxccdata).
QStringList currentTables();
// The index that finds a print run's contacts by QSL letter (LIKE without case can use it).
QString qslIndex();
// The older layout of logtab and PNT_Beacon, as delivered before the map columns existed.
QString oldLogtab();
QString oldBeacons();
// The dxccdata table as it was before schema migration 2.
QString dxccTable();

// A column name as the schema spells it ("callsign" -> "Callsign"): a server gives every
// unquoted name back in lower case. Names the schema does not know come back unchanged.
QString spelling(const QString& name);
} // namespace LogbookSchema
