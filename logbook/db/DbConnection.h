#pragma once
// One connection to the logbook database for the length of one action: opened on
// construction (busy timeout set); on destruction what it wrote is folded from the write-ahead
// journal into the file, then it is closed and forgotten. Missing files are
// never created by accident; failures become a DbError with a sentence the operator can read.
//
// The connection text is a file path, or a "postgresql://user@host:port/database" address of a
// club's logbook server (the password comes from PGPASSWORD or a .pgpass, never from the text).
// On a server the SQLite texts are translated (SqlDialect), a failing statement inside a
// transaction takes back only itself (as SQLite's do), and connections are kept per thread for
// the next action rather than closed.
#include "logbook/db/DbError.h"

#include <QHash>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>

struct sqlite3;
struct pg_conn;
class RowStore;

class DbConnection {
public:
    static constexpr int DefaultBusyTimeoutMs = 3000;

    // `file` is the database file (the connection text); create: make it when missing.
    explicit DbConnection(const QString& file, int busyTimeoutMs = DefaultBusyTimeoutMs, bool create = false);
    ~DbConnection();
    DbConnection(const DbConnection&) = delete;
    DbConnection& operator=(const DbConnection&) = delete;

    // Whether a connection text names a logbook server rather than a file.
    static bool isServer(const QString& connection);
    // "host:port/database" of a server's text (no user, no password), for messages.
    static QString serverName(const QString& connection);

    bool isOpen() const { return open_; }
    bool onServer() const { return server_; }
    const DbError& error() const { return error_; }
    QSqlDatabase database() const;
    sqlite3* handle() const { return handle_; }
    pg_conn* serverHandle() const { return pg_; }
    // The statement as this connection's database speaks it: unchanged on SQLite, translated on
    // a server (where an empty text means "nothing to do there", e.g. a journal PRAGMA).
    QString sql(const QString& text) const;

    // Runs one statement; false with error() set on failure.
    bool exec(const QString& sql, const QVariantList& values = {});
    // Checks a statement without running it (syntax, tables, columns, file format).
    bool check(const QString& sql);
    // The column names a statement gives, without running it; false with error() set.
    bool describe(const QString& sql, QStringList* names);
    // Runs a query and appends its rows to `rows` (reset to the statement's columns from
    // `first` on; with first == 1 column 0 is each row's id); false with error() set.
    bool readRows(const QString& sql, RowStore& rows, int first);
    // Write transaction: BEGIN IMMEDIATE (so a competing writer is met at once), COMMIT, ROLLBACK.
    bool begin();
    bool commit();
    void rollback();
    // On a server, whether a statement failing inside a transaction takes back only itself (as
    // on SQLite, at the cost of a savepoint per statement) rather than spoiling the transaction.
    // Wanted where a run of writes goes on after one of them fails.
    void setStatementRollback(bool on) { statementRollback_ = on; }
    qint64 lastInsertRowId() const;
    int changes() const;

    // Turns a SQLite result code and message into the operator's sentence.
    static DbError sqliteError(int code, const QString& message, const QString& file);

    // Turns a server's SQLSTATE and message into the operator's sentence.
    static DbError serverError(const QString& state, const QString& message, const QString& connection);

private:
    bool fail(int code, const QString& message);
    bool failOnServer(const QString& state, const QString& message);
    void openServer(const QString& connection);
    bool execOnServer(const QString& sql, const QVariantList& values);
    bool inTransaction() const;

    QString name_;
    QString file_;
    sqlite3* handle_ = nullptr;
    pg_conn* pg_ = nullptr;
    bool open_ = false;
    bool server_ = false;
    bool broken_ = false; // a server connection that failed is not kept for the next action
    int changes_ = 0;
    bool statementRollback_ = false;
    bool committed_ = false; // a transaction was committed (schema changes count no rows)
    DbError error_;
    QHash<QString, QSqlQuery> prepared_; // statements with values, by text
};
