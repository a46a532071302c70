#include "logbook/browse/WorkedBefore.h"

#include "logbook/db/DbConnection.h"
#include "logbook/entry/LogClock.h"

#include <QSqlQuery>

namespace {
QString squareOf(const QString& locator)
{
    return locator.size() >= 4 ? locator.left(4).toUpper() : QString();
}
} // namespace

bool WorkedBefore::load(const QString& connection, DbError* error)
{
    byCall_.clear();
    entityBands_.clear();
    squareBands_.clear();
    ids_.clear();
    contacts_ = 0;
    DbConnection conn(connection);
    if (!conn.isOpen()) {
        if (error)
            *error = conn.error();
        return false;
    }
    if (readRows(conn, QString(), error) < 0)
        return false;
    return dxcc_.load(connection, error);
}

int WorkedBefore::readRows(DbConnection& conn, const QString& where, DbError* error)
{
    QSqlQuery q(conn.database());
    q.setForwardOnly(true);
    if (!q.exec(
            conn.sql(QStringLiteral("SELECT Callsign, Date, Band, mode, Grid, QSL, DXCC, ID FROM logtab%1 "
                                    "ORDER BY Date, GMT")
                         .arg(where)))) {
        if (error)
            *error = { DbErrorNumber::NoSuchField, QStringLiteral("The database has no table logtab.") };
        return -1;
    }
    int rows = 0;
    for (; q.next(); ++rows)
        add({ q.value(0).toString(), q.value(1).toString(), q.value(2).toString(), q.value(3).toString(),
            q.value(4).toString(), q.value(5).toString(), q.value(6).toString(), q.value(7).toLongLong() });
    q.finish();
    return rows;
}

int WorkedBefore::addRows(const QString& connection, const QList<qint64>& ids, DbError* error)
{
    QStringList wanted;
    for (const qint64 id : ids) {
        if (!ids_.contains(id))
            wanted << QString::number(id);
    }
    if (wanted.isEmpty())
        return 0;
    DbConnection conn(connection);
    if (!conn.isOpen()) {
        if (error)
            *error = conn.error();
        return -1;
    }
    return readRows(conn, QStringLiteral(" WHERE ID IN (%1)").arg(wanted.join(QLatin1Char(','))), error);
}

void WorkedBefore::add(const WorkedContact& c)
{
    const QString call = c.callsign.trimmed().toUpper();
    if (call.isEmpty())
        return;
    if (c.id > 0) {
        if (ids_.contains(c.id))
            return;
        ids_.insert(c.id);
    }
    byCall_[call].append(c);
    ++contacts_;
    if (!c.entity.isEmpty())
        entityBands_.insert(key(c.entity, c.band));
    const QString square = squareOf(c.grid);
    if (!square.isEmpty())
        squareBands_.insert(key(square, c.band));
}

WorkedCheck WorkedBefore::check(const QString& callsign, const QString& band, const QString& locator)
{
    WorkedCheck out;
    const QString call = callsign.trimmed().toUpper();
    if (call.isEmpty())
        return out;
    const auto it = byCall_.constFind(call);
    if (it != byCall_.cend()) {
        out.earlier.reserve(it->size());
        for (auto c = it->crbegin(); c != it->crend(); ++c) {
            out.earlier.append(*c);
            out.dupe = out.dupe || (!band.isEmpty() && c->band == band);
        }
    }
    if (band.isEmpty())
        return out;
    out.entity = dxcc_.find(call).name;
    out.newEntity = !out.entity.isEmpty() && !entityBands_.contains(key(out.entity, band));
    out.square = squareOf(locator);
    out.newSquare = !out.square.isEmpty() && !squareBands_.contains(key(out.square, band));
    return out;
}

QStringList WorkedBefore::lines(const WorkedCheck& check, const QString& band, int maxContacts)
{
    QStringList out;
    if (check.dupe)
        out << QStringLiteral("DUPE on %1").arg(band);
    if (check.newEntity)
        out << QStringLiteral("New DXCC on %1: %2").arg(band, check.entity);
    if (check.newSquare)
        out << QStringLiteral("New square on %1: %2").arg(band, check.square);
    for (int i = 0; i < check.earlier.size() && i < maxContacts; ++i) {
        const WorkedContact& c = check.earlier[i];
        QStringList parts { LogClock::displayDate(LogClock::date(c.date)), c.band, c.mode };
        if (!c.grid.isEmpty())
            parts << c.grid;
        if (!c.qsl.isEmpty())
            parts << QStringLiteral("QSL ") + c.qsl;
        out << parts.join(QStringLiteral("  "));
    }
    if (check.earlier.size() > maxContacts)
        out << QStringLiteral("... %1 more").arg(check.earlier.size() - maxContacts);
    return out;
}
