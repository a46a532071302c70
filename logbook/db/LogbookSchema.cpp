#include "logbook/db/LogbookSchema.h"

#include <QHash>

namespace {
// The 31 columns of the log as delivered. Column 0 is the hidden row id; 1 to 16 are the ones
// the program names; the rest are kept for other loggers and never touched. Date is stored
// as yyyy-MM-dd so that sorting on it is chronological. Band, Callsign and Grid compare
// without case (as the program's LIKE does), which lets their indexes serve LIKE 'x%'.
const char* const LogColumns
    = "ID INTEGER PRIMARY KEY, "
      "Date TEXT, GMT TEXT, Callsign TEXT COLLATE NOCASE, Grid TEXT COLLATE NOCASE, "
      "rsts TEXT, rstr TEXT, Band TEXT COLLATE NOCASE, mode TEXT, Nam TEXT, "
      "QSL TEXT, Prop TEXT, QRB REAL, QTF REAL, Comment TEXT, DXCC TEXT, QSLman TEXT, "
      "Freq TEXT, TxPwr TEXT, Antenna TEXT, MyCall TEXT, MyGrid TEXT, Contest TEXT, "
      "NrSent TEXT, NrRcvd TEXT, QSLsent TEXT, QSLrcvd TEXT, Cont TEXT, "
      "CQZone INTEGER, ITUZone INTEGER, Remarks TEXT";
const char* const MapColumns = "GEdata text(250), GEpoly text(250), GEgridXY text(250)";
// Added by schema migration 2: the ADIF entity number, and the ADIF fields without a column of
// their own as ADIF text ("<NAME:len>value" ...).
const char* const AdifColumns = "DxccNr INTEGER, AdifExtra TEXT";
// Column 1 is a LIKE pattern, column 2 the entity's name; the lookup reads them by position
// and takes the first matching row in stored order, so rows go in most specific first. Columns
// added later go after these.
const char* const DxccColumns = "ID INTEGER PRIMARY KEY, dxcccode TEXT, Country TEXT, Prefix TEXT";
const char* const DxccEntityColumns = "DxccNr INTEGER, CQZone INTEGER, ITUZone INTEGER, Cont TEXT";
const char* const BeaconColumnList
    = "ID INTEGER PRIMARY KEY, beacon TEXT COLLATE NOCASE, Locator TEXT, qrg TEXT, "
      "Equipment TEXT, Mode TEXT";
} // namespace

namespace LogbookSchema {

QStringList currentTables()
{
    return {
        QStringLiteral("CREATE TABLE logtab (%1, %2, %3)")
            .arg(QLatin1String(LogColumns), QLatin1String(MapColumns), QLatin1String(AdifColumns)),
        QStringLiteral("CREATE INDEX logtab_band ON logtab (Band)"),
        QStringLiteral("CREATE INDEX logtab_callsign ON logtab (Callsign)"),
        QStringLiteral("CREATE INDEX logtab_grid ON logtab (Grid)"),
        QStringLiteral("CREATE INDEX logtab_date ON logtab (Date)"),
        qslIndex(),
        QStringLiteral("CREATE TABLE PNT_Beacon (%1, GEpoly text(250), GEdata text(250), GEgridXY text(250))")
            .arg(QLatin1String(BeaconColumnList)),
        QStringLiteral("CREATE TABLE dxccdata (%1, %2)")
            .arg(QLatin1String(DxccColumns), QLatin1String(DxccEntityColumns)),
    };
}

QString qslIndex()
{
    return QStringLiteral("CREATE INDEX IF NOT EXISTS logtab_qsl ON logtab (QSL COLLATE NOCASE)");
}

QString oldLogtab()
{
    return QStringLiteral("CREATE TABLE logtab (%1)").arg(QLatin1String(LogColumns));
}

QString oldBeacons()
{
    return QStringLiteral("CREATE TABLE PNT_Beacon (%1, XCoord REAL, YCoord REAL)")
        .arg(QLatin1String(BeaconColumnList));
}

QString dxccTable()
{
    return QStringLiteral("CREATE TABLE dxccdata (%1)").arg(QLatin1String(DxccColumns));
}

QString spelling(const QString& name)
{
    static const QHash<QString, QString> names = [] {
        QHash<QString, QString> out;
        for (const char* list : { LogColumns, MapColumns, AdifColumns, DxccColumns, DxccEntityColumns,
                 BeaconColumnList, "XCoord REAL, YCoord REAL" }) {
            for (const QString& column : QString::fromLatin1(list).split(QLatin1Char(','))) {
                const QString n = column.trimmed().section(QLatin1Char(' '), 0, 0);
                out.insert(n.toLower(), n);
            }
        }
        return out;
    }();
    return names.value(name, name);
}

} // namespace LogbookSchema
