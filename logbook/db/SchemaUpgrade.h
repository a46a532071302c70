#pragma once
// The one-time schema upgrade run at each load of the beacon list: a log table of 31 columns
// gains GEdata, GEpoly and GEgridXY; a beacon table of 8 columns loses XCoord and YCoord and
// gains the same three. The column count is the only guard, and it is taken from the rows: a
// table without rows counts 0 and is left alone until it has one.
#include "logbook/db/DbError.h"

#include <QString>
#include <QStringList>

class SchemaUpgrade {
public:
    struct Result {
        int logtabCount = 0;
        int beaconCount = 0;
        bool logtabUpgraded = false;
        bool beaconsUpgraded = false;
        DbError error;
    };

    // The upgrade check: counts logtab ("SELECT * FROM LogTab"), upgrades it at 31, then
    // counts PNT_Beacon ("SELECT * FROM PNT_Beacon") and upgrades it at 8. Stops at the first
    // error, which is returned (nothing of a failed upgrade stays applied).
    static Result check(const QString& connection);

    // Number of fields of the rows of a query, 0 when it has no row; -1 with error set on failure.
    static int rowFieldCount(const QString& connection, const QString& sql, DbError* error = nullptr);

    // The statements of each upgrade, in the order they run.
    static QStringList logtabStatements();
    static QStringList beaconStatements();
    // Runs the statements in one transaction.
    static bool upgradeLogtab(const QString& connection, DbError* error = nullptr);
    static bool upgradeBeacons(const QString& connection, DbError* error = nullptr);

private:
    static bool run(const QString& connection, const QStringList& statements, DbError* error);
};
