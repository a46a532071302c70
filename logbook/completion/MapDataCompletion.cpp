#include "logbook/completion/MapDataCompletion.h"

#include "logbook/db/SqlText.h"
#include "logbook/entry/ContactSummary.h"

#include <QElapsedTimer>

MapDataCompletion::MapDataCompletion(
    const QString& connection, const QString& bandPattern, LocatorProcedure locate, const MapPosition& stored)
    : connection_(connection)
    , bandPattern_(bandPattern)
    , locate_(std::move(locate))
    , stored_(stored)
    , rs_(connection)
    , batch_(connection, QStringLiteral("logtab"), { QStringLiteral("GEdata"), QStringLiteral("GEgridXY") })
{
}

QString MapDataCompletion::message(qint64 count)
{
    return QString::number(count) + Imported;
}

MapDataCompletion::State MapDataCompletion::fail(const DbError& e)
{
    error_ = e.isError() ? e : DbError { 1, QStringLiteral("unknown error") };
    batch_.flush(); // what was completed before the error stays completed
    rs_.close();
    return state_ = State::Failed;
}

MapDataCompletion::State MapDataCompletion::start()
{
    // deliberate: the filter is set even for an empty band pattern.
    rs_.setFilter(SqlText::bandFilter(bandPattern_));
    if (!rs_.open(SqlText::LogList))
        return fail(rs_.error());
    total_ = rs_.recordCount();
    if (rs_.hasError())
        return fail(rs_.error());
    auto field = [this](const char* name) { return rs_.fieldIndex(QLatin1String(name)); };
    f_.id = field("ID");
    f_.date = field("Date");
    f_.gmt = field("GMT");
    f_.call = field("Callsign");
    f_.grid = field("grid");
    f_.rsts = field("rsts");
    f_.rstr = field("rstr");
    f_.band = field("Band");
    f_.qsl = field("QSL");
    f_.comment = field("comment");
    f_.prop = field("Prop");
    f_.qtf = field("QTF");
    f_.qrb = field("QRB");
    f_.geData = field("GEdata");
    f_.gridXY = field("GEgridXY");
    for (const int i : { f_.grid, f_.geData, f_.gridXY }) {
        if (i < 0)
            return fail({ DbErrorNumber::NoSuchField,
                QStringLiteral("The log has no grid, GEdata or GEgridXY column.") });
    }
    return state_ = total_ > 0 ? State::Running : State::Done;
}

bool MapDataCompletion::completeRow(int row)
{
    auto text = [&](int field) { return field < 0 ? QString() : rs_.valueAt(row, field).toString(); };
    const QString grid = text(f_.grid);
    SummaryValues v;
    v.date = text(f_.date);
    v.time = text(f_.gmt);
    v.callsign = text(f_.call);
    v.rsts = text(f_.rsts);
    v.rstr = text(f_.rstr);
    v.band = text(f_.band);
    v.qsl = text(f_.qsl);
    v.comment = text(f_.comment);
    v.prop = text(f_.prop);
    // An empty or non-numeric distance reads as 0 instead of ending the completion.
    stored_.bearing = f_.qtf < 0 ? 0.0f : rs_.valueAt(row, f_.qtf).toFloat();
    stored_.distanceKm = f_.qrb < 0 ? 0.0f : rs_.valueAt(row, f_.qrb).toFloat();
    if (locate_)
        locate_(grid, stored_);
    v.distanceKm = stored_.distanceKm;
    v.bearing = stored_.bearing;
    const QString summary = ContactSummary::text(v);
    const QVariant id = f_.id >= 0 ? rs_.valueAt(row, f_.id) : QVariant();
    if (id.isValid()) {
        batch_.add(id.toLongLong(), { summary, stored_.coordText });
        return true;
    }
    // A log without an ID column is written row by row.
    return rs_.move(row) && rs_.setValue(f_.geData, summary) && rs_.setValue(f_.gridXY, stored_.coordText)
        && rs_.update();
}

MapDataCompletion::State MapDataCompletion::step(qint64 budgetNs)
{
    if (state_ != State::Running)
        return state_;
    QElapsedTimer clock;
    clock.start();
    for (int i = 1; row_ < total_ && (i % 128 != 0 || clock.nsecsElapsed() < budgetNs); ++i, ++row_) {
        if (!rs_.valueAt(row_, f_.grid).isValid())
            continue; // a NULL grid: the record is left untouched
        if (!completeRow(row_))
            return fail(rs_.error());
        ++completed_;
    }
    if (!batch_.flush())
        return fail(batch_.error());
    if (row_ < total_)
        return state_;
    rs_.close();
    return state_ = State::Done;
}

void MapDataCompletion::cancel()
{
    if (state_ != State::Running)
        return;
    batch_.flush();
    rs_.close();
    state_ = State::Cancelled;
}
