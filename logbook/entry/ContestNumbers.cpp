#include "logbook/entry/ContestNumbers.h"

#include "logbook/db/DbConnection.h"

#include <QSqlQuery>

namespace ContestNumbers {

QString nextSent(const QString& connection, const QString& bandPattern)
{
    DbConnection c(connection);
    QSqlQuery q(c.database());
    // Texts that are no number (a typed "12A") count by their leading digits, as CAST does.
    q.prepare(c.sql(QStringLiteral("SELECT MAX(CAST(NrSent AS INTEGER)) FROM logtab WHERE Band LIKE ? "
                                   "AND NrSent GLOB '[0-9]*'")));
    q.addBindValue(bandPattern.isEmpty() ? QStringLiteral("%") : bandPattern);
    if (!q.exec() || !q.next() || q.value(0).isNull())
        return QString();
    return QStringLiteral("%1").arg(q.value(0).toLongLong() + 1, 3, 10, QLatin1Char('0'));
}

} // namespace ContestNumbers
