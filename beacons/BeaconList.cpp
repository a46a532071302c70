#include "beacons/BeaconList.h"

#include "beacons/BeaconsLog.h"
#include "logbook/db/SchemaUpgrade.h"
#include "logbook/db/SqlCaseFold.h"
#include "logbook/db/SqlText.h"

namespace BeaconList {

Query query(const QString& search, bool byQrg, const QString& nameFilter)
{
    Query q;
    if (search.isEmpty())
        q.sql = SqlText::BeaconList;
    else if (!SqlCaseFold::needsFolding(search))
        q.sql = SqlText::beaconSearch(search);
    else // LIKE folds ASCII letters only: both sides are folded for other alphabets
        q.sql = SqlText::BeaconList + QStringLiteral(" where casefold(beacon) like '")
            + SqlText::quoted(search.toCaseFolded()) + QStringLiteral("%'");
    q.sort = byQrg ? SqlText::BeaconSortQrg : SqlText::BeaconSortName;
    q.filter = SqlText::beaconNameFilter(nameFilter);
    return q;
}

Loaded load(const QString& connection, const QString& search, bool byQrg, const QString& nameFilter)
{
    Loaded out;
    const SchemaUpgrade::Result upgrade = SchemaUpgrade::check(connection);
    if (upgrade.error) {
        out.error = upgrade.error;
        return out;
    }
    if (upgrade.logtabUpgraded || upgrade.beaconsUpgraded)
        qCInfo(lcBeacons) << "schema brought up to date: logtab" << upgrade.logtabUpgraded << "PNT_Beacon"
                          << upgrade.beaconsUpgraded;

    const Query q = query(search, byQrg, nameFilter);
    out.rs.setConnection(connection);
    out.rs.setSort(q.sort);
    out.rs.setFilter(q.filter);
    // Reading the rows now puts any failure here, not into the grid's first paint.
    if (!out.rs.open(q.sql) || (out.rs.recordCount(), out.rs.hasError()))
        out.error = out.rs.error();
    return out;
}

DbError save(const QString& connection, const NewBeacon& entry)
{
    Recordset rs(connection);
    const bool ok = rs.open(SqlText::Beacons) && rs.addNew()
        && rs.setValue(QStringLiteral("beacon"), entry.beacon)
        && rs.setValue(QStringLiteral("QRG"), entry.qrg)
        && rs.setValue(QStringLiteral("Locator"), entry.locator)
        && rs.setValue(QStringLiteral("equipment"), entry.equipment) && rs.update();
    if (!ok) {
        qCWarning(lcBeacons) << "new beacon not stored:" << rs.errorText();
        return rs.hasError() ? rs.error() : DbError { -1, QStringLiteral("the entry could not be stored") };
    }
    rs.close();
    return {};
}

QString presetQrg(const QString& bandPattern)
{
    return bandPattern.left(bandPattern.size() - 1);
}

} // namespace BeaconList
