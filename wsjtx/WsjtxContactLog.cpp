#include "wsjtx/WsjtxContactLog.h"

#include "logbook/adif/AdifContact.h"
#include "logbook/adif/AdifImport.h"
#include "logbook/adif/AdifMapping.h"
#include "logbook/db/DbConnection.h"
#include "logbook/entry/ContactSave.h"

#include <QSqlQuery>
#include <QSqlRecord>

WsjtxContactLog::WsjtxContactLog(const QString& connection, LocatorProcedure locate, LogClock::Base clock)
    : connection_(connection)
    , locate_(std::move(locate))
    , clock_(clock)
{
}

// The log's columns and its contacts' keys, read once; later saves add to the keys.
bool WsjtxContactLog::prepare(QString* error)
{
    if (prepared_)
        return true;
    DbConnection conn(connection_);
    if (!conn.isOpen()) {
        *error = conn.error().text();
        return false;
    }
    QSqlQuery q(conn.database());
    if (!q.exec(conn.sql(QStringLiteral("SELECT Callsign, Date, GMT, Band, mode FROM logtab")))) {
        *error = QStringLiteral("The database has no table logtab.");
        return false;
    }
    while (q.next())
        known_.insert(AdifImport::duplicateKey(q.value(0).toString(), q.value(1).toString(),
            q.value(2).toString(), q.value(3).toString(), q.value(4).toString()));
    if (q.exec(conn.sql(QStringLiteral("SELECT * FROM logtab LIMIT 0")))) {
        const QSqlRecord all = q.record();
        for (int i = 0; i < all.count(); ++i)
            columns_ << all.fieldName(i).toLower();
    }
    q.finish();
    dxccLoaded_ = dxcc_.load(connection_);
    prepared_ = true;
    return true;
}

WsjtxContactLog::Outcome WsjtxContactLog::log(const AdifRecord& record)
{
    Outcome out;
    AdifContact c;
    if (!AdifMapping::toContact(record, c, &out.text, nullptr, clock_))
        return out;
    out.callsign = c.callsign;
    if (!prepare(&out.text)) {
        out.kind = Outcome::Failed;
        return out;
    }
    const QString key = AdifImport::duplicateKey(c.callsign, c.date, c.gmt, c.band, c.mode);
    if (known_.contains(key)) {
        out.kind = Outcome::AlreadyLogged;
        return out;
    }
    if (dxccLoaded_)
        AdifMapping::setEntity(c, dxcc_.find(c.callsign));

    EntryLine line;
    line.DA = c.date;
    line.GM = c.gmt;
    line.Ca = c.callsign;
    line.Gr = c.grid;
    line.Rss = c.rsts;
    line.Rr = c.rstr;
    line.Ba = c.band;
    line.mo = c.mode;
    line.Na = c.nam;
    line.Co = c.comment;
    line.Qs = c.qsl;
    line.Pr = c.prop;
    line.cou = c.dxcc;
    MapPosition position;
    if (!c.grid.isEmpty() && locate_)
        locate_(c.grid, position);
    QList<SavedField> fields = ContactSave::fields(line, position);
    const std::pair<const char*, QString> further[]
        = { { "Freq", c.freq }, { "TxPwr", c.txPwr }, { "MyCall", c.myCall }, { "MyGrid", c.myGrid },
              { "NrSent", c.nrSent }, { "NrRcvd", c.nrRcvd }, { "Cont", c.cont }, { "CQZone", c.cqZone },
              { "ITUZone", c.ituZone }, { "DxccNr", c.dxccNr }, { "AdifExtra", c.adifExtra } };
    for (const auto& [column, value] : further) {
        if (!value.isEmpty() && columns_.contains(QString::fromLatin1(column).toLower()))
            fields.append({ QLatin1String(column), value });
    }
    qint64 id = 0;
    const DbError e = ContactSave::save(connection_, fields, &id);
    if (e.number == DbErrorNumber::AlreadyLogged) {
        known_.insert(key); // another position on the same radio logged it first
        out.kind = Outcome::AlreadyLogged;
        return out;
    }
    if (e) {
        out.kind = Outcome::Failed;
        out.text = e.text();
        return out;
    }
    known_.insert(key);
    out.kind = Outcome::Saved;
    out.saved = { c.callsign, c.date, c.band, c.mode, c.grid, c.qsl, c.dxcc, id };
    return out;
}
