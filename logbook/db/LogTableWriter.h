#pragma once
// The rows kestrel-log copy writes into one table of the target log, inside the caller's
// transaction: one COPY on a server, one prepared INSERT stepped per row in a file. Every value
// goes in as the source held it.
#include "logbook/db/DbError.h"
#include "logbook/db/LogSource.h"

#include <memory>

struct sqlite3_stmt;
class DbConnection;
class ServerCopyIn;

class LogTableWriter {
public:
    LogTableWriter(DbConnection& connection, const QString& table, const QList<LogColumn>& columns);
    ~LogTableWriter();
    LogTableWriter(const LogTableWriter&) = delete;
    LogTableWriter& operator=(const LogTableWriter&) = delete;

    // False when the row could not be stored (a server tells at finish()).
    bool add(const LogRow& row);
    // Ends the table; false with *error set when any of its rows was refused.
    bool finish(DbError* error);

private:
    DbError fileError() const;

    DbConnection& c_;
    std::unique_ptr<ServerCopyIn> copy_;
    sqlite3_stmt* insert_ = nullptr;
    DbError error_;
};
