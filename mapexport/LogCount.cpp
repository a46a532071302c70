#include "mapexport/LogCount.h"

#include "core/Station.h"
#include "logbook/db/SqlText.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/MapExportLog.h"
#include "mapexport/RichtungQrb.h"

#include <QElapsedTimer>

namespace {

bool isSquares(LogCount::Kind k)
{
    return k == LogCount::Kind::SQNr || k == LogCount::Kind::SQNQr;
}

const QString& sqlOf(LogCount::Kind k)
{
    switch (k) {
    case LogCount::Kind::SQNr:
        return SqlText::LogWithGrid;
    case LogCount::Kind::SQNQr:
        return SqlText::LogWithGridConfirmed;
    case LogCount::Kind::DXNr:
        return SqlText::LogWithDxcc;
    case LogCount::Kind::DXNQr:
        break;
    }
    return SqlText::LogWithDxccConfirmed;
}

QString& labelOf(LogMapFields& f, LogCount::Kind k)
{
    switch (k) {
    case LogCount::Kind::SQNr:
        return f.sqw;
    case LogCount::Kind::SQNQr:
        return f.sqc;
    case LogCount::Kind::DXNr:
        return f.dxw;
    case LogCount::Kind::DXNQr:
        break;
    }
    return f.dxc;
}

} // namespace

LogCount::LogCount(
    Station& station, LogMapFields& fields, Kind kind, const QString& bandPattern, const QString& searchText)
    : station_(station)
    , fields_(fields)
    , kind_(kind)
    , bandPattern_(bandPattern)
    , searchText_(searchText)
    , counter_(isSquares(kind) ? RunCounter::Kind::Squares : RunCounter::Kind::Entities)
    , outlines_(station.dbConnection, QStringLiteral("logtab"), { QStringLiteral("GEpoly") })
{
}

QString LogCount::procedure() const
{
    switch (kind_) {
    case Kind::SQNr:
        return QStringLiteral("SQNr");
    case Kind::SQNQr:
        return QStringLiteral("SQNQr");
    case Kind::DXNr:
        return QStringLiteral("DXNr");
    case Kind::DXNQr:
        break;
    }
    return QStringLiteral("DXNQr");
}

QString LogCount::stage() const
{
    switch (kind_) {
    case Kind::SQNr:
        return QStringLiteral("Counting worked squares");
    case Kind::SQNQr:
        return QStringLiteral("Counting confirmed squares");
    case Kind::DXNr:
        return QStringLiteral("Counting worked DXCC entities");
    case Kind::DXNQr:
        break;
    }
    return QStringLiteral("Counting confirmed DXCC entities");
}

LogCount::State LogCount::fail(const QString& numberAndDescription)
{
    rs_.close();
    station_.prompts.information(numberAndDescription + QStringLiteral(" in procedure ") + procedure()
        + QStringLiteral(" of Formular form5"));
    return state_ = State::Failed;
}

LogCount::State LogCount::start()
{
    if (!searchText_.isEmpty())
        return state_ = State::Skipped;
    const QString filter = SqlText::logListFilter(bandPattern_);
    rows_ = &rs_;
    if (shared_ && shared_->isOpen() && shared_->source() == sqlOf(kind_) && shared_->filter() == filter
        && shared_->fieldIndex(QStringLiteral("ID")) >= 0) {
        rows_ = shared_;
    } else {
        rs_.setConnection(station_.dbConnection);
        rs_.setFilter(filter);
        if (!rs_.open(sqlOf(kind_)))
            return fail(rs_.errorText());
    }
    total_ = rows_->recordCount();
    if (rows_->hasError())
        return fail(rows_->errorText());
    keyField_ = rows_->fieldIndex(isSquares(kind_) ? QStringLiteral("grid") : QStringLiteral("dxcc"));
    polyField_ = rows_->fieldIndex(QStringLiteral("GEpoly"));
    idField_ = rows_->fieldIndex(QStringLiteral("ID"));
    if (keyField_ < 0 || (kind_ == Kind::SQNr && polyField_ < 0))
        return fail(QStringLiteral("Error 3265 (The log has no %1 column)")
                        .arg(keyField_ >= 0        ? QStringLiteral("GEpoly")
                                : isSquares(kind_) ? QStringLiteral("grid")
                                                   : QStringLiteral("dxcc")));
    if (total_ > 0 && !rows_->valueAt(0, keyField_).isValid()) {
        row_ = 1; // a Null key on the first record is passed over
        ++done_;
    }
    if (total_ == 0) {
        rs_.close();
        return state_ = State::Empty;
    }
    return state_ = State::Running;
}

bool LogCount::storeOutline()
{
    fields_.passOver = true;
    fields_.passOverSquare = counter_.lastKey();
    RichtungQRB(station_, fields_, QString());
    // deliberate: an invalid square stores the outline left by the square before.
    const QVariant id = idField_ >= 0 ? rows_->valueAt(row_, idField_) : QVariant();
    if (id.isValid()) {
        outlines_.add(id.toLongLong(), { fields_.outline });
        return true;
    }
    // Without an ID the recordset writes the row itself (never a shared one: those have IDs).
    return rs_.move(row_) && rs_.setValue(polyField_, fields_.outline) && rs_.update();
}

bool LogCount::flushOutlines()
{
    return outlines_.flush();
}

LogCount::State LogCount::step(qint64 budgetNs)
{
    if (state_ != State::Running)
        return state_;
    QElapsedTimer clock;
    clock.start();
    for (int i = 1; row_ < total_ && (i % 256 != 0 || clock.nsecsElapsed() < budgetNs); ++i, ++row_) {
        const bool newRun = counter_.add(rows_->valueAt(row_, keyField_).toString());
        if (counter_.overflowed()) {
            flushOutlines(); // what was stored before the error stays stored
            return fail(QStringLiteral("Error 9 (Subscript out of range)"));
        }
        if (newRun && kind_ == Kind::SQNr && !storeOutline())
            return fail(rs_.errorText());
        ++done_;
    }
    if (!flushOutlines())
        return fail(outlines_.error().text());
    if (row_ < total_)
        return state_;
    labelOf(fields_, kind_) = QString::number(counter_.labelValue());
    rs_.close();
    return state_ = State::Done;
}

void LogCount::cancel()
{
    if (state_ != State::Running)
        return;
    flushOutlines();
    rs_.close();
    state_ = State::Cancelled;
}

LogCount::State RunLogCount(LogCount& count, const MapProgress& progress)
{
    constexpr qint64 kSliceNs = 100'000'000;
    LogCount::State s = count.start();
    while (s == LogCount::State::Running) {
        if (progress && !progress(count.stage(), count.done(), count.total())) {
            count.cancel();
            break;
        }
        s = count.step(kSliceNs);
    }
    return count.state();
}

static LogCount::State runKind(LogCount::Kind kind, Station& station, LogMapFields& fields,
    const QString& bandPattern, const QString& searchText, const MapProgress& progress)
{
    LogCount count(station, fields, kind, bandPattern, searchText);
    return RunLogCount(count, progress);
}

LogCount::State SQNr(Station& station, LogMapFields& fields, const QString& bandPattern,
    const QString& searchText, const MapProgress& progress)
{
    return runKind(LogCount::Kind::SQNr, station, fields, bandPattern, searchText, progress);
}

LogCount::State SQNQr(Station& station, LogMapFields& fields, const QString& bandPattern,
    const QString& searchText, const MapProgress& progress)
{
    return runKind(LogCount::Kind::SQNQr, station, fields, bandPattern, searchText, progress);
}

LogCount::State DXNr(Station& station, LogMapFields& fields, const QString& bandPattern,
    const QString& searchText, const MapProgress& progress)
{
    return runKind(LogCount::Kind::DXNr, station, fields, bandPattern, searchText, progress);
}

LogCount::State DXNQr(Station& station, LogMapFields& fields, const QString& bandPattern,
    const QString& searchText, const MapProgress& progress)
{
    return runKind(LogCount::Kind::DXNQr, station, fields, bandPattern, searchText, progress);
}
