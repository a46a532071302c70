#pragma once
// The log kestrel-log copy reads: every value as its database holds it (NULL, integer, real,
// text or binary), table by table in ID order, from one snapshot, never written to. A file is
// read through a read-only SQLite handle, a server in a read-only transaction, row by row.
#include "logbook/db/DbError.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

struct sqlite3;
class DbConnection;

// One value as the source holds it.
struct LogCell {
    enum Kind { Null, Integer, Real, Text, Blob } kind = Null;
    qint64 integer = 0;
    double real = 0;
    QByteArray bytes; // Text (UTF-8) and Blob

    // An Integer or Real in its shortest exact text.
    QByteArray numberText() const;
};
using LogRow = std::vector<LogCell>;

struct LogColumn {
    QString name;
    LogCell::Kind kind; // Integer or Real for a number column, else Text
};

class LogSource {
public:
    explicit LogSource(const QString& connection);
    ~LogSource();
    LogSource(const LogSource&) = delete;
    LogSource& operator=(const LogSource&) = delete;

    // Opens the log for reading: it must exist, be Kestrel's and be at the current schema version.
    DbError open();
    // The file, or host:port/database of a server, for messages.
    QString name() const;

    // The table's columns as the schema spells them, with the kind of the number columns.
    bool columns(const QString& table, QList<LogColumn>* out, DbError* error);
    // Every row of the table in ID order, handed to `each` (which may stop the reading by
    // returning false).
    bool read(const QString& table, const QList<LogColumn>& columns, const std::function<bool(LogRow&)>& each,
        DbError* error);

private:
    DbError fileError() const;
    bool readFile(
        const QByteArray& sql, LogRow& row, const std::function<bool(LogRow&)>& each, DbError* error);
    bool readServer(
        const QByteArray& sql, LogRow& row, const std::function<bool(LogRow&)>& each, DbError* error);

    QString text_;
    sqlite3* file_ = nullptr;
    std::unique_ptr<DbConnection> server_;
};
