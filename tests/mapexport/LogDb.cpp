#include "tests/mapexport/LogDb.h"

#include "geo/Locator.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookSchema.h"

#include <QSqlQuery>

LogDb::LogDb()
{
    DbConnection c(path(), DbConnection::DefaultBusyTimeoutMs, true);
    for (const QString& sql : LogbookSchema::currentTables())
        c.exec(sql);
    c.exec("PRAGMA journal_mode=WAL");
    station.dbConnection = path();
    station.settings.setText(Setting::MyCall, "N0CALL");
    station.settings.setText(Setting::MyLocator, "JN48OW");
    station.transparency = "128";
}

bool LogDb::add(const QList<Contact>& contacts)
{
    DbConnection c(path());
    if (!c.begin())
        return false;
    for (const Contact& k : contacts) {
        ++added;
        const QString call = QStringLiteral("DL%1XY").arg(added);
        const QString loc = Locator::completed(k.grid.toUpper());
        const QString xy = Locator::isValid(loc) ? CoordText(LocatorToDegrees(loc)) : QString();
        const QString data = "Log: " + call + " " + k.band
            + " kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:512km  QTF:87" + " QSL: " + k.qsl
            + " Prop:" + k.prop + " " + k.comment;
        const bool ok
            = c.exec("INSERT INTO logtab (Date, GMT, Callsign, Grid, Band, QSL, Prop, Comment, DXCC, GEdata, "
                     "GEpoly, GEgridXY) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                { "2026-11-15", "18:20", call, k.grid, k.band, k.qsl, k.prop, k.comment, k.dxcc, data, k.poly,
                    xy });
        if (!ok)
            return false;
    }
    return c.commit();
}

QStringList LogDb::polys() const
{
    DbConnection c(path());
    QSqlQuery q(c.database());
    QStringList out;
    q.exec("SELECT GEpoly FROM logtab ORDER BY ID");
    while (q.next())
        out << q.value(0).toString();
    return out;
}
