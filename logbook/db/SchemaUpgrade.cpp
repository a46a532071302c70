#include "logbook/db/SchemaUpgrade.h"

#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SqlText.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>

int SchemaUpgrade::rowFieldCount(const QString& connection, const QString& sql, DbError* error)
{
    DbConnection c(connection);
    if (!c.isOpen()) {
        if (error)
            *error = c.error();
        return -1;
    }
    QSqlQuery q(c.database());
    q.setForwardOnly(true);
    if (!q.exec(c.sql(sql))) {
        const QSqlError e = q.lastError();
        if (error)
            *error = DbConnection::sqliteError(
                e.nativeErrorCode().toInt(), e.databaseText() + QStringLiteral(" in: ") + sql, connection);
        return -1;
    }
    // Every row of a table has the same number of fields, so the count the walk would keep
    // (the last row's, 0 before any) is settled by the first row.
    return q.next() ? q.record().count() : 0;
}

QStringList SchemaUpgrade::logtabStatements()
{
    return { SqlText::AddLogGEdata, SqlText::AddLogGEpoly, SqlText::AddLogGEgridXY };
}

QStringList SchemaUpgrade::beaconStatements()
{
    return { SqlText::DropBeaconXCoord, SqlText::DropBeaconYCoord, SqlText::AddBeaconGEpoly,
        SqlText::AddBeaconGEdata, SqlText::AddBeaconGEgridXY };
}

bool SchemaUpgrade::run(const QString& connection, const QStringList& statements, DbError* error)
{
    DbConnection c(connection);
    bool ok = c.isOpen() && c.begin();
    for (const QString& sql : statements) {
        if (!ok)
            break;
        ok = c.exec(sql);
    }
    ok = ok && c.commit();
    if (!ok) {
        c.rollback();
        if (error)
            *error = c.error();
        qCWarning(lcLogbook) << "schema upgrade failed:" << c.error().text();
    }
    return ok;
}

bool SchemaUpgrade::upgradeLogtab(const QString& connection, DbError* error)
{
    return run(connection, logtabStatements(), error);
}

bool SchemaUpgrade::upgradeBeacons(const QString& connection, DbError* error)
{
    return run(connection, beaconStatements(), error);
}

SchemaUpgrade::Result SchemaUpgrade::check(const QString& connection)
{
    Result r;
    r.logtabCount = rowFieldCount(connection, SqlText::LogTabCount, &r.error);
    if (r.logtabCount < 0)
        return r;
    if (r.logtabCount == LogbookSchema::LogtabColumnsOld) {
        if (!upgradeLogtab(connection, &r.error))
            return r;
        r.logtabUpgraded = true;
        qCInfo(lcLogbook) << "logtab brought to the current schema";
    }
    r.beaconCount = rowFieldCount(connection, SqlText::Beacons, &r.error);
    if (r.beaconCount < 0)
        return r;
    if (r.beaconCount == LogbookSchema::BeaconColumnsOld) {
        if (!upgradeBeacons(connection, &r.error))
            return r;
        r.beaconsUpgraded = true;
        qCInfo(lcLogbook) << "PNT_Beacon brought to the current schema";
    }
    return r;
}
