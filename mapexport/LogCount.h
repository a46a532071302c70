#pragma once
// The logbook's count procedures SQNr (worked squares, which also stores each square's
// outline in GEpoly), SQNQr (confirmed squares), DXNr and DXNQr (worked and confirmed DXCC
// entities). Each opens its own recordset, counts runs of equal keys in order and writes the
// result into its label caption in LogMapFields. A LogCount runs in slices (step) so a window
// can show progress; the free functions run one to the end.
#include "logbook/db/Recordset.h"
#include "logbook/db/RowUpdateBatch.h"
#include "mapexport/MapProgress.h"
#include "mapexport/RunCounter.h"

#include <QString>

class Station;
struct LogMapFields;

class LogCount {
public:
    enum class Kind { SQNr, SQNQr, DXNr, DXNQr };
    enum class State {
        Running, // more records to count
        Done, // label written
        Skipped, // text in the search box: no recordset, label untouched
        Empty, // nothing selected: label untouched
        Cancelled, // stopped on request: label untouched, outlines stored so far kept
        Failed // message shown: label untouched, outlines stored so far kept
    };

    LogCount(Station& station, LogMapFields& fields, Kind kind, const QString& bandPattern,
        const QString& searchText);

    // Reads these rows instead of opening its own recordset, when they come from the same
    // SQL text and filter and carry the ID column (the export shares its snapshot so the log
    // is read once, not twice). Call before start(); `rows` must outlive the count.
    void shareRows(const Recordset& rows) { shared_ = &rows; }

    // Opens and reads the recordset; Running when there is something to count.
    State start();
    // Counts records for about `budgetNs` nanoseconds (at least a few hundred records), then
    // stores the outlines found in one transaction. Running while records remain, else the
    // final state.
    State step(qint64 budgetNs);
    void cancel();

    State state() const { return state_; }
    qint64 done() const { return done_; }
    qint64 total() const { return total_; }
    QString stage() const;
    // "SQNr", "SQNQr", ...: the name error messages carry.
    QString procedure() const;

private:
    State fail(const QString& numberAndDescription);
    bool storeOutline();
    bool flushOutlines();

    Station& station_;
    LogMapFields& fields_;
    Kind kind_;
    QString bandPattern_;
    QString searchText_;
    Recordset rs_;
    const Recordset* shared_ = nullptr;
    const Recordset* rows_ = nullptr; // rs_ or shared_
    int row_ = 0;
    RunCounter counter_;
    int keyField_ = -1;
    int polyField_ = -1;
    int idField_ = -1;
    RowUpdateBatch outlines_;
    qint64 done_ = 0;
    qint64 total_ = 0;
    State state_ = State::Running;
};

// One whole run with optional progress (which may cancel it).
LogCount::State RunLogCount(LogCount& count, const MapProgress& progress = {});

LogCount::State SQNr(Station& station, LogMapFields& fields, const QString& bandPattern,
    const QString& searchText, const MapProgress& progress = {});
LogCount::State SQNQr(Station& station, LogMapFields& fields, const QString& bandPattern,
    const QString& searchText, const MapProgress& progress = {});
LogCount::State DXNr(Station& station, LogMapFields& fields, const QString& bandPattern,
    const QString& searchText, const MapProgress& progress = {});
LogCount::State DXNQr(Station& station, LogMapFields& fields, const QString& bandPattern,
    const QString& searchText, const MapProgress& progress = {});
