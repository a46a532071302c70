#include "mapexport/OutlineBatch.h"

#include "logbook/db/DbConnection.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

bool OutlineBatch::flush()
{
    if (pending_.isEmpty())
        return true;
    DbConnection c(connection_);
    if (!c.isOpen() || !c.begin()) {
        error_ = c.error();
        return false;
    }
    QSqlQuery q(c.database());
    bool ok = q.prepare(QStringLiteral("UPDATE logtab SET GEpoly = ? WHERE ID = ?"));
    for (qsizetype i = 0; ok && i < pending_.size(); ++i) {
        q.bindValue(0, pending_[i].second);
        q.bindValue(1, pending_[i].first);
        ok = q.exec();
    }
    if (!ok) {
        error_ = DbConnection::sqliteError(
            q.lastError().nativeErrorCode().toInt(), q.lastError().databaseText(), connection_);
        c.rollback();
        return false;
    }
    if (!c.commit()) {
        error_ = c.error();
        c.rollback();
        return false;
    }
    pending_.clear();
    return true;
}
