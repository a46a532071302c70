#include "logbook/browse/DxccLookup.h"

#include "logbook/db/DbConnection.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

#include <QSqlQuery>

namespace DxccLookup {

QString convertedPattern(const QString& pattern)
{
    if (!pattern.endsWith(QLatin1Char('*')))
        return pattern;
    return pattern.left(pattern.size() - 1) + QLatin1Char('%');
}

DxccLookupResult lookup(const QString& connection, const QString& callsign)
{
    DxccLookupResult r;
    Recordset rs(connection);
    if (!rs.open(SqlText::dxccLookup(callsign)) || rs.atEnd()) {
        r.error = rs.error();
        return r;
    }
    r.found = true;
    r.entity = rs.text(2);
    for (bool more = true; more; more = rs.next()) {
        const QString code = rs.text(1);
        const QString converted = convertedPattern(code);
        if (converted == code)
            continue;
        if (!rs.setValue(1, converted) || !rs.update()) {
            r.error = rs.error();
            rs.cancelUpdate();
            break;
        }
        ++r.rewritten;
    }
    return r;
}

int convertPatterns(const QString& connection, DbError* error)
{
    // The pattern column is found by position, whatever its name.
    Recordset shape(connection);
    if (!shape.open(SqlText::DxccAll) || shape.fieldCount() < 2) {
        if (error)
            *error = shape.hasError()
                ? shape.error()
                : DbError { DbErrorNumber::NoSuchField, QStringLiteral("dxccdata has no pattern column.") };
        return -1;
    }
    QString column = shape.fieldName(1);
    column.replace(QLatin1Char('"'), QLatin1String("\"\""));
    column = QLatin1Char('"') + column + QLatin1Char('"');
    DbConnection c(connection);
    const QString where = QStringLiteral(" WHERE substr(%1, -1) = '*'").arg(column);
    QSqlQuery count(c.database());
    if (c.isOpen() && count.exec(QStringLiteral("SELECT count(*) FROM dxccdata") + where) && count.next()
        && count.value(0).toInt() == 0)
        return 0; // nothing to write: a read-only file is fine too
    count.finish();
    const QString sql
        = QStringLiteral("UPDATE dxccdata SET %1 = substr(%1, 1, length(%1) - 1) || '%'").arg(column) + where;
    if (!c.isOpen() || !c.begin() || !c.exec(sql)) {
        const DbError e = c.error();
        c.rollback();
        if (error)
            *error = e;
        return -1;
    }
    const int changed = c.changes();
    if (!c.commit()) {
        if (error)
            *error = c.error();
        c.rollback();
        return -1;
    }
    return changed;
}

} // namespace DxccLookup
