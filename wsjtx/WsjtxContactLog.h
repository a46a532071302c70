#pragma once
// Puts the contacts WSJT-X logged into the log through the entry line's save (ContactSave):
// the record is mapped as the ADIF import maps it (UTC to the log's clock), gets its DXCC
// entity and number from the in-memory index and distance, bearing and map texts from the
// window's locator procedure, plus the columns the entry line has no box for (frequency,
// power, own call and locator, exchange, zones). A contact already in the log (call, date,
// hour and minute, band, mode) is not saved again: WSJT-X sends each one twice (QSO Logged and
// Logged ADIF), and a second program on the same radio may send it once more.
#include "logbook/adif/AdifReader.h"
#include "logbook/browse/DxccIndex.h"
#include "logbook/browse/WorkedContact.h"
#include "logbook/entry/LogClock.h"
#include "logbook/entry/MapPosition.h"

#include <QSet>
#include <QString>
#include <QStringList>

class WsjtxContactLog {
public:
    struct Outcome {
        enum Kind { Saved, AlreadyLogged, Refused, Failed };
        Kind kind = Refused;
        QString callsign;
        QString text; // why it was refused or failed
        WorkedContact saved; // as it went into the log
    };

    WsjtxContactLog(const QString& connection, LocatorProcedure locate, LogClock::Base clock);

    Outcome log(const AdifRecord& record);

private:
    bool prepare(QString* error);

    QString connection_;
    LocatorProcedure locate_;
    LogClock::Base clock_;
    bool prepared_ = false;
    QStringList columns_; // lower-case names of logtab's columns
    QSet<QString> known_;
    DxccIndex dxcc_;
    bool dxccLoaded_ = false;
};
