#pragma once
// One connection to the logbook database for the length of one action: opened on
// construction (busy timeout set); on destruction what it wrote is folded from the write-ahead
// journal into the file, then it is closed and forgotten. Missing files are
// never created by accident; failures become a DbError with a sentence the operator can read.
#include "logbook/db/DbError.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

struct sqlite3;

class DbConnection {
public:
    static constexpr int DefaultBusyTimeoutMs = 3000;

    // `file` is the database file (the connection text); create: make it when missing.
    explicit DbConnection(const QString& file, int busyTimeoutMs = DefaultBusyTimeoutMs, bool create = false);
    ~DbConnection();
    DbConnection(const DbConnection&) = delete;
    DbConnection& operator=(const DbConnection&) = delete;

    bool isOpen() const { return open_; }
    const DbError& error() const { return error_; }
    QSqlDatabase database() const;
    sqlite3* handle() const { return handle_; }

    // Runs one statement; false with error() set on failure.
    bool exec(const QString& sql, const QVariantList& values = {});
    // Checks a statement without running it (syntax, tables, columns, file format).
    bool check(const QString& sql);
    // Write transaction: BEGIN IMMEDIATE (so a competing writer is met at once), COMMIT, ROLLBACK.
    bool begin();
    bool commit();
    void rollback();
    qint64 lastInsertRowId() const;
    int changes() const;

    // Turns a SQLite result code and message into the operator's sentence.
    static DbError sqliteError(int code, const QString& message, const QString& file);

private:
    bool fail(int code, const QString& message);

    QString name_;
    QString file_;
    sqlite3* handle_ = nullptr;
    bool open_ = false;
    bool committed_ = false; // a transaction was committed (schema changes count no rows)
    DbError error_;
    QHash<QString, QSqlQuery> prepared_; // statements with values, by text
};
