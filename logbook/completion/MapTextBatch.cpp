#include "logbook/completion/MapTextBatch.h"

#include "logbook/db/DbConnection.h"

#include <QSqlError>
#include <QSqlQuery>

bool MapTextBatch::flush()
{
    if (pending_.isEmpty())
        return true;
    DbConnection c(connection_);
    if (!c.isOpen() || !c.begin()) {
        error_ = c.error();
        return false;
    }
    QSqlQuery q(c.database());
    bool ok = q.prepare(QStringLiteral("UPDATE logtab SET GEdata = ?, GEgridXY = ? WHERE ID = ?"));
    for (qsizetype i = 0; ok && i < pending_.size(); ++i) {
        const Row& r = pending_[i];
        q.bindValue(0, r.geData);
        q.bindValue(1, r.gridXY);
        q.bindValue(2, r.id);
        ok = q.exec();
    }
    if (!ok) {
        const QSqlError e = q.lastError();
        error_ = DbConnection::sqliteError(e.nativeErrorCode().toInt(), e.databaseText(), connection_);
        q.finish();
        c.rollback();
        return false;
    }
    q.finish();
    if (!c.commit()) {
        error_ = c.error();
        c.rollback();
        return false;
    }
    pending_.clear();
    return true;
}
