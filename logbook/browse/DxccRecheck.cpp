#include "logbook/browse/DxccRecheck.h"

#include "logbook/browse/DxccIndex.h"
#include "logbook/db/DbConnection.h"

#include <QSqlError>
#include <QSqlQuery>

namespace DxccRecheck {

int run(const QString& connection, DbError* error)
{
    auto fail = [error](const DbError& e) {
        if (error)
            *error = e;
        return -1;
    };
    DxccIndex index;
    DbError e;
    if (!index.load(connection, &e))
        return fail(e);
    DbConnection c(connection);
    if (!c.isOpen() || !c.begin())
        return fail(c.error());
    QSqlQuery rows(c.database());
    rows.setForwardOnly(true);
    if (!rows.exec(c.sql(QStringLiteral("SELECT ID, Callsign, DXCC, DxccNr FROM logtab")))) {
        const QSqlError failed = rows.lastError();
        c.rollback();
        return fail(
            DbConnection::sqliteError(failed.nativeErrorCode().toInt(), failed.databaseText(), connection));
    }
    QList<QVariantList> changes;
    while (rows.next()) {
        const DxccEntity entity = index.find(rows.value(1).toString());
        const QVariant number = entity.dxccNr > 0 ? QVariant(entity.dxccNr) : QVariant();
        if (rows.value(2).toString() == entity.name && rows.value(3).toInt() == entity.dxccNr)
            continue;
        auto zone = [](int z) { return z > 0 ? QVariant(z) : QVariant(); };
        changes.append({ entity.name, number, zone(entity.cqZone), zone(entity.ituZone),
            entity.continent.isEmpty() ? QVariant() : QVariant(entity.continent), rows.value(0) });
    }
    rows.finish();
    const QString update = QStringLiteral("UPDATE logtab SET DXCC = ?, DxccNr = ?, CQZone = coalesce(CQZone, "
                                          "?), ITUZone = coalesce(ITUZone, ?), "
                                          "Cont = coalesce(nullif(Cont, ''), ?) WHERE ID = ?");
    for (const QVariantList& values : changes) {
        if (!c.exec(update, values)) {
            const DbError failed = c.error();
            c.rollback();
            return fail(failed);
        }
    }
    if (!c.commit()) {
        const DbError failed = c.error();
        c.rollback();
        return fail(failed);
    }
    return int(changes.size());
}

} // namespace DxccRecheck
