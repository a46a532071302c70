#include "logbook/db/RowUpdateBatch.h"

#include "logbook/db/DbConnection.h"

#include <QSqlError>
#include <QSqlQuery>

RowUpdateBatch::RowUpdateBatch(const QString& connection, const QString& table, const QStringList& columns)
    : connection_(connection)
    , sql_(QStringLiteral("UPDATE %1 SET %2 = ? WHERE ID = ?")
               .arg(table, columns.join(QStringLiteral(" = ?, "))))
{
}

bool RowUpdateBatch::flush()
{
    if (pending_.isEmpty())
        return true;
    DbConnection c(connection_);
    if (!c.isOpen() || !c.begin()) {
        error_ = c.error();
        return false;
    }
    QSqlQuery q(c.database());
    bool ok = q.prepare(c.sql(sql_));
    for (qsizetype i = 0; ok && i < pending_.size(); ++i) {
        const Row& r = pending_[i];
        for (qsizetype v = 0; v < r.values.size(); ++v)
            q.bindValue(int(v), r.values[v]);
        q.bindValue(int(r.values.size()), r.id);
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
