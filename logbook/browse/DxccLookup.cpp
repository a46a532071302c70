#include "logbook/browse/DxccLookup.h"

#include "logbook/db/DbConnection.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

#include "logbook/browse/DxccCall.h"

#include <QSqlQuery>

namespace DxccLookup {

QString lookupText(DbConnection& c, const QString& callsign)
{
    // The same rule as the in-memory index: a row whose pattern is the text itself, without wildcards.
    auto isExactCall = [&c](const QString& text) {
        QSqlQuery q(c.database());
        q.setForwardOnly(true);
        q.prepare(c.sql(QStringLiteral("SELECT 1 FROM dxccdata WHERE dxcccode = ? COLLATE NOCASE "
                                       "AND instr(dxcccode, '%') = 0 AND instr(dxcccode, '_') = 0 LIMIT 1")));
        q.addBindValue(text);
        return q.exec() && q.next();
    };
    return DxccCall::normalised(callsign, isExactCall);
}

QString convertedPattern(const QString& pattern)
{
    if (!pattern.endsWith(QLatin1Char('*')))
        return pattern;
    return pattern.left(pattern.size() - 1) + QLatin1Char('%');
}

DxccLookupResult lookup(const QString& connection, const QString& callsign)
{
    DxccLookupResult r;
    QString text;
    {
        DbConnection c(connection);
        if (!c.isOpen()) {
            r.error = c.error();
            return r;
        }
        text = lookupText(c, callsign);
    }
    if (text.isEmpty())
        return r; // /MM, /AM: no entity
    Recordset rs(connection);
    if (!rs.open(SqlText::dxccLookup(text)) || rs.atEnd()) {
        r.error = rs.error();
        return r;
    }
    r.found = true;
    auto value = [&rs](const char* name) {
        const int field = rs.fieldIndex(QLatin1String(name));
        return field < 0 ? QVariant() : rs.value(field);
    };
    r.entity = { true, rs.text(2), value("DxccNr").toInt(), value("CQZone").toInt(), value("ITUZone").toInt(),
        value("Cont").toString() };
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
    if (c.isOpen() && count.exec(c.sql(QStringLiteral("SELECT count(*) FROM dxccdata") + where)) && count.next()
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
