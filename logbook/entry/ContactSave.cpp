#include "logbook/entry/ContactSave.h"

#include "logbook/adif/AdifImport.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogDate.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "logbook/entry/ContactSummary.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <libpq-fe.h>

namespace ContactSave {

QString summary(const EntryLine& l, const MapPosition& stored)
{
    SummaryValues v;
    v.callsign = l.Ca;
    v.band = l.Ba;
    v.date = l.DA;
    v.time = l.GM;
    v.rsts = l.Rss;
    v.rstr = l.Rr;
    v.distanceKm = stored.distanceKm;
    v.bearing = stored.bearing;
    v.qsl = l.Qs;
    v.prop = l.Pr;
    v.comment = l.Co;
    return ContactSummary::text(v);
}

double storedNumber(float value)
{
    return storedNumber(value, ContactSummary::numberText(value));
}

double storedNumber(float value, const QString& text)
{
    if (!std::isfinite(value))
        return text.toDouble();
    // The text is plain ASCII digits; from_chars rounds as toDouble does, without the locale
    // machinery that cost the bulk paths (import, map completion) several microseconds a number.
    char digits[32];
    const qsizetype n = std::min<qsizetype>(text.size(), sizeof digits);
    for (qsizetype i = 0; i < n; ++i)
        digits[i] = char(text[i].unicode());
    double out = 0;
    const auto [end, error] = std::from_chars(digits, digits + n, out);
    return error == std::errc() && end == digits + n ? out : text.toDouble();
}

QList<SavedField> fields(const EntryLine& l, const MapPosition& stored)
{
    QList<SavedField> out = {
        { QStringLiteral("Date"), LogDate::toStored(l.DA) },
        { QStringLiteral("GMT"), l.GM },
        { QStringLiteral("Callsign"), l.Ca },
        { QStringLiteral("Grid"), l.Gr },
        { QStringLiteral("rsts"), l.Rss },
        { QStringLiteral("rstr"), l.Rr },
        { QStringLiteral("Band"), l.Ba },
        { QStringLiteral("mode"), l.mo },
        { QStringLiteral("Nam"), l.Na },
        { QStringLiteral("Comment"), l.Co },
        { QStringLiteral("QSL"), l.Qs },
        { QStringLiteral("Prop"), l.Pr },
        { QStringLiteral("DXCC"), l.cou },
        { QStringLiteral("QRB"), storedNumber(stored.distanceKm) },
        { QStringLiteral("QTF"), storedNumber(stored.bearing) },
        { QStringLiteral("GEdata"), summary(l, stored) },
        { QStringLiteral("GEgridXY"), stored.coordText },
    };
    if (!l.Ns.trimmed().isEmpty() || !l.Nr.trimmed().isEmpty())
        out += { { QStringLiteral("NrSent"), l.Ns.trimmed() }, { QStringLiteral("NrRcvd"), l.Nr.trimmed() } };
    return out;
}

namespace {
QString fieldText(const QList<SavedField>& fields, const QString& column)
{
    for (const SavedField& f : fields) {
        if (f.column.compare(column, Qt::CaseInsensitive) == 0)
            return f.value.toString();
    }
    return QString();
}

// One statement with its values as texts, straight through libpq: the save is a handful of
// round trips, and a prepared statement would cost one more each.
struct PgQuery {
    PGresult* r = nullptr;
    PgQuery(DbConnection& c, const char* sql, const QList<QByteArray>& values)
    {
        QVarLengthArray<const char*, 24> p;
        for (const QByteArray& v : values)
            p.append(v.isNull() ? nullptr : v.constData());
        r = PQexecParams(c.serverHandle(), sql, int(p.size()), nullptr, p.constData(), nullptr, nullptr, 0);
    }
    ~PgQuery() { PQclear(r); }
    bool ok() const
    {
        const ExecStatusType s = PQresultStatus(r);
        return s == PGRES_TUPLES_OK || s == PGRES_COMMAND_OK;
    }
    QString text(int row, int column) const { return QString::fromUtf8(PQgetvalue(r, row, column)); }
    DbError error(const QString& connection) const
    {
        return DbConnection::serverError(QString::fromLatin1(PQresultErrorField(r, PG_DIAG_SQLSTATE)),
            QString::fromUtf8(PQresultErrorMessage(r)).trimmed(), connection);
    }
};

QByteArray serverText(const QVariant& value)
{
    if (!value.isValid())
        return QByteArray(); // NULL
    QByteArray text = value.toString().toUtf8();
    if (text.isNull())
        text = QByteArray(""); // as the recordset stores it: an empty text is a text, never NULL
    return text;
}

// Check and insert in one transaction under an advisory lock on the contact's key: two positions
// saving the same contact at once are put one after the other, and the second finds the first.
DbError saveOnServer(const QString& connection, const QList<SavedField>& fields, qint64* id)
{
    const QString call = fieldText(fields, QStringLiteral("Callsign"));
    const QString date = fieldText(fields, QStringLiteral("Date"));
    const QString gmt = fieldText(fields, QStringLiteral("GMT"));
    const QString band = fieldText(fields, QStringLiteral("Band"));
    const QString mode = fieldText(fields, QStringLiteral("mode"));
    const QString key = AdifImport::duplicateKey(call, date, gmt, band, mode);
    DbConnection c(connection);
    if (!c.isOpen())
        return c.error();
    if (!c.begin())
        return c.error();
    auto failed = [&](const PgQuery& q) {
        const DbError e = q.error(connection);
        c.rollback();
        return e;
    };
    if (PgQuery lock(c, "SELECT pg_advisory_xact_lock(hashtext($1))", { key.toUtf8() }); !lock.ok())
        return failed(lock);
    // deliberate: a contact without a call is saved as it is, as on a file.
    if (!call.trimmed().isEmpty()) {
        // The day's contacts with the call (the date index finds them); the key decides, as the
        // ADIF import's check does (time to the minute, mode without case).
        PgQuery same(c,
            "SELECT callsign, date, gmt, band, mode FROM logtab WHERE date = $1 AND upper(callsign) = $2",
            { date.toUtf8(), call.toUpper().toUtf8() });
        if (!same.ok())
            return failed(same);
        for (int row = 0; row < PQntuples(same.r); ++row) {
            if (AdifImport::duplicateKey(same.text(row, 0), same.text(row, 1), same.text(row, 2),
                    same.text(row, 3), same.text(row, 4))
                == key) {
                c.rollback();
                return { DbErrorNumber::AlreadyLogged,
                    QStringLiteral("%1 on %2 at %3 %4 (%5) is already in the log: saved at another position "
                                   "or earlier here, so it was not saved again.")
                        .arg(call, band, LogDate::toDisplay(date), gmt, mode) };
            }
        }
    }
    QStringList columns;
    QStringList marks;
    QList<QByteArray> values;
    for (const SavedField& f : fields) {
        columns << f.column;
        marks << QStringLiteral("$%1").arg(marks.size() + 1);
        values << serverText(f.value);
    }
    const QByteArray insert = QStringLiteral("INSERT INTO logtab (%1) VALUES (%2) RETURNING id")
                                  .arg(columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")))
                                  .toUtf8();
    PgQuery added(c, insert.constData(), values);
    if (!added.ok())
        return failed(added);
    const qint64 newId = added.text(0, 0).toLongLong();
    if (!c.commit())
        return c.error();
    if (id)
        *id = newId;
    return {};
}
} // namespace

DbError save(const QString& connection, const QList<SavedField>& fields, qint64* id)
{
    if (DbConnection::isServer(connection))
        return saveOnServer(connection, fields, id);
    Recordset rs(connection);
    if (!rs.open(SqlText::LogList) || !rs.addNew())
        return rs.error();
    for (const SavedField& f : fields) {
        if (!rs.setValue(f.column, f.value)) {
            const DbError e = rs.error();
            rs.cancelUpdate();
            return e;
        }
    }
    if (!rs.update())
        return rs.error();
    return {};
}

} // namespace ContactSave
