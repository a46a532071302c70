#pragma once
// What went wrong in one database action: a number and a sentence the operator can read.
// SQLite failures carry SQLite's result code; recordset misuse carries the classic
// recordset error numbers (3021 no current record, 3265 no such field, 3704 not open, ...).
#include <QString>

struct DbError {
    int number = 0;
    QString description;

    bool isError() const { return number != 0 || !description.isEmpty(); }
    explicit operator bool() const { return isError(); }
    // "Error 5 (The database is locked ...)": the form the windows show.
    QString text() const { return QStringLiteral("Error %1 (%2)").arg(number).arg(description); }
};

namespace DbErrorNumber {
constexpr int NoCurrentRecord = 3021;
constexpr int NoSuchField = 3265;
constexpr int NotOpen = 3704;
constexpr int NotUpdatable = 3251;
constexpr int RowChanged = 3640;
constexpr int NoFile = 3024;
// A contact whose key (call, date, time, band, mode) a server log holds already: not saved twice.
constexpr int AlreadyLogged = 3022;
// The logbook server cannot be reached (refused, gone, restarting): what was typed is kept.
constexpr int ServerGone = 3151;
} // namespace DbErrorNumber
