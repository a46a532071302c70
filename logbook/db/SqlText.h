#pragma once
// Every SQL text, filter text and sort text the program issues against the logbook
// database, byte for byte (blanks included), and the builders that splice values into them.
// Spliced values have each single quote doubled, so O'NEILL can be searched for.
#include <QString>

namespace SqlText {
// The log list; the target for saving a new contact; the map data completion.
inline const QString LogList = QStringLiteral("SELECT * FROM logtab");
// The upgrade check's column count of logtab.
inline const QString LogTabCount = QStringLiteral("SELECT * FROM LogTab");
// The upgrade check of PNT_Beacon; the target for saving beacons; beacon map data.
inline const QString Beacons = QStringLiteral("SELECT * FROM PNT_Beacon");
// Beacon map export.
inline const QString BeaconMap = QStringLiteral("select *  from PNT_Beacon");
// Beacon list.
inline const QString BeaconList = QStringLiteral("SELECT beacon, Locator, qrg, Equipment FROM PNT_beacon");
// Beacon list search: head + text + "%" + "'".
inline const QString BeaconSearchHead
    = QStringLiteral("SELECT beacon, Locator, qrg, Equipment  FROM PNT_beacon where beacon like '");
// DXCC lookup: head + callsign + tail; the callsign stands left of LIKE.
inline const QString DxccLookupHead = QStringLiteral("SELECT * FROM dxccdata where '");
inline const QString DxccLookupTail = QStringLiteral("' like dxcccode ");
// Prefix pattern conversion over the whole table (two trailing blanks).
inline const QString DxccAll = QStringLiteral("SELECT * FROM dxccdata  ");
// Search by callsign or locator beginning: head + text + "%" + "'".
inline const QString SearchCallsignHead = QStringLiteral("select * from logtab where  callsign like '");
inline const QString SearchGridHead = QStringLiteral("select * from logtab where  Grid like '");
// All contacts with a locator (no blank before "order").
inline const QString LogWithGrid = QStringLiteral("select *  from logtab where grid <> ''order by grid");
// Confirmed contacts with a locator.
inline const QString LogWithGridConfirmed
    = QStringLiteral("select *  from logtab where grid <> ''and QSL like'q' order by grid");
// Contacts with a DXCC entity.
inline const QString LogWithDxcc = QStringLiteral("select  *  from logtab where DXCC <>'' order by dxcc ");
// Confirmed contacts with a DXCC entity.
inline const QString LogWithDxccConfirmed
    = QStringLiteral("select  *  from logtab where DXCC <>'' and QSL like 'Q'  order by dxcc ");
// Contacts whose cards are to be printed: head + letter + tail.
inline const QString QslRunHead = QStringLiteral("select  *  from logtab where  QSL like '");
inline const QString QslRunTail = QStringLiteral("' order by callsign");

// Schema upgrade of logtab, in this order.
inline const QString AddLogGEdata = QStringLiteral("ALTER TABLE logtab ADD COLUMN GEdata text(250);");
inline const QString AddLogGEpoly = QStringLiteral("ALTER TABLE logtab ADD COLUMN GEpoly text(250);");
inline const QString AddLogGEgridXY = QStringLiteral("ALTER TABLE logtab ADD COLUMN GEgridXY text(250);");
// Schema upgrade of PNT_Beacon, in this order (the two drops end in a blank).
inline const QString DropBeaconXCoord = QStringLiteral("ALTER TABLE PNT_Beacon DROP COLUMN XCoord ");
inline const QString DropBeaconYCoord = QStringLiteral("ALTER TABLE PNT_Beacon DROP COLUMN YCoord ");
inline const QString AddBeaconGEpoly = QStringLiteral("ALTER TABLE PNT_Beacon ADD COLUMN GEpoly text(250);");
inline const QString AddBeaconGEdata = QStringLiteral("ALTER TABLE PNT_Beacon ADD COLUMN GEdata text(250);");
inline const QString AddBeaconGEgridXY
    = QStringLiteral("ALTER TABLE PNT_Beacon ADD COLUMN GEgridXY text(250);");

// Recordset filter of a band: head + band pattern + "'" (leading blank kept).
inline const QString BandFilterHead = QStringLiteral(" band like '");
// Recordset filter of the beacon names: head + name filter + "'".
inline const QString BeaconFilterHead = QStringLiteral(" beacon like '");
// Sort of the log list (two blanks, trailing blank).
inline const QString LogListSort = QStringLiteral("date  desc ");
// Sorts of the beacon list: by frequency text, by name.
inline const QString BeaconSortQrg = QStringLiteral("qrg  asc ");
inline const QString BeaconSortName = QStringLiteral("beacon  asc ");
// The beacons-only name filter.
inline const QString BeaconsOnlyPattern = QStringLiteral("%/b%");

// A value as it goes between single quotes: each ' doubled.
QString quoted(const QString& value);

QString dxccLookup(const QString& callsign);
QString searchByCallsign(const QString& text);
QString searchByGrid(const QString& text);
QString beaconSearch(const QString& text);
QString qslRun(const QString& letter);
// " band like '<pattern>'" whatever the pattern (the map data completion sets it even when empty).
QString bandFilter(const QString& pattern);
// The log list's and search's filter: empty for an empty pattern, else bandFilter().
QString logListFilter(const QString& pattern);
// The beacon list's filter: empty for an empty name filter, else " beacon like '<filter>'".
QString beaconNameFilter(const QString& nameFilter);
} // namespace SqlText
