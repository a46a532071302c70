#include "beacons/BeaconMapData.h"

#include "beacons/BeaconTexts.h"
#include "beacons/BeaconsLog.h"
#include "core/Station.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

#include <QSqlError>
#include <QSqlQuery>

namespace {

struct MapTexts {
    QString gridXY;
    QString geData;
};

// One transaction for the whole run: a disk sync per record would cost more than the rest.
DbError storeById(const QString& connection, const Recordset& rs, int idField, const QList<MapTexts>& texts)
{
    DbConnection c(connection);
    if (!c.isOpen() || !c.begin())
        return c.error();
    QSqlQuery q(c.database());
    bool ok = q.prepare(c.sql(QStringLiteral("UPDATE PNT_Beacon SET GEgridXY = ?, GEdata = ? WHERE ID = ?")));
    for (int row = 0; ok && row < texts.size(); ++row) {
        // an empty text, not Null, as the recordset would store it
        q.bindValue(0, texts[row].gridXY.isNull() ? QStringLiteral("") : texts[row].gridXY);
        q.bindValue(1, texts[row].geData);
        q.bindValue(2, rs.valueAt(row, idField));
        ok = q.exec();
    }
    if (!ok) {
        const DbError e = DbConnection::sqliteError(
            q.lastError().nativeErrorCode().toInt(), q.lastError().databaseText(), connection);
        c.rollback();
        return e;
    }
    if (!c.commit()) {
        const DbError e = c.error();
        c.rollback();
        return e;
    }
    return {};
}

// A table without the ID column: record by record through the recordset.
DbError storeByRecord(Recordset& rs, const QList<MapTexts>& texts)
{
    int row = 0;
    for (bool more = rs.first(); more; more = rs.next(), ++row) {
        if (!rs.setValue(QStringLiteral("GEgridXY"), texts[row].gridXY)
            || !rs.setValue(QStringLiteral("GEdata"), texts[row].geData) || !rs.update())
            return rs.error();
    }
    return rs.hasError() ? rs.error() : DbError();
}

} // namespace

GdOutcome GD(Station& station, const QString& nameFilter)
{
    GdOutcome out;
    Recordset rs(station.dbConnection);
    rs.setFilter(SqlText::beaconNameFilter(nameFilter));
    DbError error;
    if (rs.open(SqlText::Beacons) && (rs.recordCount(), !rs.hasError())) {
        const int beacon = rs.fieldIndex(QStringLiteral("beacon"));
        const int locator = rs.fieldIndex(QStringLiteral("Locator"));
        const int qrg = rs.fieldIndex(QStringLiteral("qrg"));
        const int equipment = rs.fieldIndex(QStringLiteral("Equipment"));
        auto text
            = [&rs](int row, int field) { return field < 0 ? QString() : rs.valueAt(row, field).toString(); };
        QList<MapTexts> texts;
        texts.reserve(rs.recordCount());
        for (int row = 0; row < rs.recordCount(); ++row) {
            const QString loc = text(row, locator);
            texts.append({ BeaconGridXY(loc),
                BeaconGeData(text(row, beacon), text(row, qrg), loc, text(row, equipment)) });
        }
        const int id = rs.fieldIndex(QStringLiteral("ID"));
        error = id >= 0 ? storeById(station.dbConnection, rs, id, texts) : storeByRecord(rs, texts);
        out.records = int(texts.size());
    } else {
        error = rs.error();
    }

    if (error) {
        qCWarning(lcBeacons) << "GD:" << error.text();
        out.message = BeaconTexts::NoNewRecordset;
    } else {
        out.ok = true;
        out.message = QString::number(out.records) + BeaconTexts::ImportedTail;
    }
    station.prompts.information(out.message);
    return out;
}
