#include "logbook/entry/ContactSave.h"

#include "logbook/db/LogDate.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "logbook/entry/ContactSummary.h"

#include <algorithm>
#include <charconv>
#include <cmath>

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
