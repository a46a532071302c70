#include "tests/beacons/BeaconDb.h"

#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "tests/support/TestDatabase.h"

#include <QDir>
#include <QSqlQuery>
#include <QVariant>

BeaconDb::BeaconDb(const QString& dir)
    : path_(TestDatabase::connectionFor(QDir(dir).filePath(QStringLiteral("backup.db"))))
{
    ok_ = DatabaseFile::create(path_) && exec(QStringLiteral("DELETE FROM PNT_Beacon"));
}

bool BeaconDb::exec(const QString& sql) const
{
    DbConnection c(path_);
    return c.exec(sql);
}

bool BeaconDb::add(const QList<Beacon>& beacons)
{
    DbConnection c(path_);
    if (!c.begin())
        return false;
    for (const Beacon& b : beacons) {
        if (!c.exec(QStringLiteral(
                        "INSERT INTO PNT_Beacon (beacon, Locator, qrg, Equipment) VALUES (?, ?, ?, ?)"),
                { b.beacon, b.locator, b.qrg, b.equipment }))
            return false;
    }
    return c.commit();
}

QStringList BeaconDb::column(const QString& name) const
{
    DbConnection c(path_);
    QSqlQuery q(c.database());
    QStringList out;
    q.exec(c.sql(QStringLiteral("SELECT %1 FROM PNT_Beacon ORDER BY rowid").arg(name)));
    while (q.next())
        out << (q.value(0).isNull() ? QStringLiteral("<null>") : q.value(0).toString());
    return out;
}
