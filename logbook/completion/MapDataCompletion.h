#pragma once
// The `gridDEC` button: completes the map data of log records that came from another logger.
// For every record of the current band (the filter " band like '<pattern>'" is set always;
// deliberately, with no band it matches only records with an empty band text) whose grid is
// not NULL, it runs the locator procedure and writes the summary text to GEdata and the
// coordinate text to GEgridXY, exactly as the save of a new contact does. It works in slices
// (step) so the window stays live and can offer a Cancel; writes go in one transaction a slice.
#include "logbook/db/Recordset.h"
#include "logbook/db/RowUpdateBatch.h"
#include "logbook/entry/MapPosition.h"

#include <QString>

class MapDataCompletion {
public:
    enum class State { Running, Done, Cancelled, Failed };

    inline static const QString Imported = QStringLiteral(" Dataset from Tarnwick backup.mdB imported");
    inline static const QString Failure = QStringLiteral("No new Recorset available");

    // `stored` is the window's stored distance, bearing and coordinate text; the completion
    // changes it as the save would (position() gives it back at the end).
    MapDataCompletion(const QString& connection, const QString& bandPattern, LocatorProcedure locate,
        const MapPosition& stored = {});

    State start();
    // Completes records for about `budgetNs` nanoseconds, then stores them. Running while
    // records remain, else the final state.
    State step(qint64 budgetNs);
    // Stops after what is done; records already completed keep their new values.
    void cancel();

    State state() const { return state_; }
    // Records gone through, of the filtered count.
    qint64 done() const { return row_; }
    qint64 total() const { return total_; }
    // Records whose map texts were written (those whose grid is not NULL).
    qint64 completed() const { return completed_; }
    const MapPosition& position() const { return stored_; }
    const DbError& error() const { return error_; }

    // The final message: the filtered count and the text " Dataset from Tarnwick backup.mdB imported".
    static QString message(qint64 count);

private:
    State fail(const DbError& e);
    bool completeRow(int row);

    QString connection_;
    QString bandPattern_;
    LocatorProcedure locate_;
    MapPosition stored_;
    Recordset rs_;
    RowUpdateBatch batch_;
    struct Fields {
        int id = -1, date = -1, gmt = -1, call = -1, grid = -1, rsts = -1, rstr = -1, band = -1;
        int qsl = -1, comment = -1, prop = -1, qtf = -1, qrb = -1, geData = -1, gridXY = -1;
    } f_;
    int total_ = 0;
    int row_ = 0;
    qint64 completed_ = 0;
    State state_ = State::Running;
    DbError error_;
};
