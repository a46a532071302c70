#include "logbook/entry/ContactSave.h"

#include "logbook/db/LogDate.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "logbook/entry/ContactSummary.h"

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
    return ContactSummary::numberText(value).toDouble();
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

DbError save(const QString& connection, const QList<SavedField>& fields)
{
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
