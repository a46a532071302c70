#pragma once
// The tables of the logbook database: the current layout a new file is made with, and the
// older layout (31-column logtab, 8-column PNT_Beacon with XCoord/YCoord) that the schema
// upgrade brings up to date. The column count is the schema version; nothing else records it.
#include <QStringList>

namespace LogbookSchema {
constexpr int LogtabColumnsOld = 31;
constexpr int LogtabColumns = 34;
constexpr int BeaconColumnsOld = 8;
constexpr int BeaconColumns = 9;

// CREATE TABLE/INDEX statements of the current schema (logtab, PNT_Beacon, dxccdata).
QStringList currentTables();
// The older layout of logtab and PNT_Beacon, as delivered before the map columns existed.
QString oldLogtab();
QString oldBeacons();
// The dxccdata table alone (old and current are the same).
QString dxccTable();
} // namespace LogbookSchema
