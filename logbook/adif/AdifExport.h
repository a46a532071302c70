#pragma once
// Writes the contacts of the current band (or of all bands, with an empty band pattern) to an
// ADIF file, oldest first, date and time converted from the log's clock to UTC. A contact
// without an entity number, zones or continent gets them from dxccdata by its call, as award
// programs want them. The file is replaced only when every record is written: a failed or
// cancelled export leaves an earlier file as it was. Works in slices (step) like the import.
#include "logbook/browse/DxccIndex.h"
#include "logbook/db/DbError.h"
#include "logbook/db/Recordset.h"
#include "logbook/entry/LogClock.h"

#include <QSaveFile>
#include <QString>

#include <memory>

class AdifExport {
public:
    enum class State { Running, Done, Cancelled, Failed };

    AdifExport(
        const QString& connection, const QString& bandPattern, LogClock::Base clock = LogClock::Base::Local);
    ~AdifExport();

    State start(const QString& path);
    State step(qint64 budgetNs);
    void cancel();

    State state() const { return state_; }
    qint64 done() const { return row_; }
    qint64 total() const { return total_; }
    const DbError& error() const { return error_; }
    // "1000 records written to log.adi." and, for records without a date (written without
    // QSO_DATE, which award programs refuse), "2 records have no date: DL1ABC 14200, G4ABC 144".
    QString report() const;

    // The sort of the export: by date and time, oldest first.
    static inline const QString Sort = QStringLiteral("Date asc, GMT asc");

private:
    State fail(const DbError& e);

    QString connection_;
    QString bandPattern_;
    LogClock::Base clock_;
    DxccIndex dxcc_;
    bool dxccLoaded_ = false;
    QStringList undated_; // "DL1ABC 14200"
    QString path_;
    Recordset rs_;
    std::unique_ptr<QSaveFile> file_;
    QList<int> fields_; // recordset field of each AdifContact column, -1 when missing
    int row_ = 0;
    int total_ = 0;
    State state_ = State::Running;
    DbError error_;
};
