#include "logbook/db/DbConnection.h"

#include "logbook/db/LogbookLogging.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/RowStore.h"
#include "logbook/db/SqlCaseFold.h"
#include "logbook/db/SqlDialect.h"

#include <QAtomicInteger>
#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>
#include <QUrl>

#include <libpq-fe.h>
#include <cstdlib>
#include <sqlite3.h>

namespace {
QString nextConnectionName()
{
    static QAtomicInteger<quint64> counter;
    return QStringLiteral("kestrel-db-%1").arg(counter.fetchAndAddRelaxed(1));
}

int primaryCode(int code)
{
    return code & 0xff;
}

// Server connections of this thread not in use, by connection text: a new connection costs a
// handshake and a password exchange, more than most actions.
QHash<QString, QStringList>& idleServerConnections()
{
    thread_local QHash<QString, QStringList> idle;
    return idle;
}

bool connectionLost(const QString& state)
{
    return state.startsWith(QLatin1String("08")) || state == QLatin1String("57P01")
        || state == QLatin1String("57P02") || state == QLatin1String("57P03");
}

struct PgResult {
    PGresult* r;
    ~PgResult() { PQclear(r); }
};
} // namespace

bool DbConnection::isServer(const QString& connection)
{
    return connection.startsWith(QLatin1String("postgresql://"))
        || connection.startsWith(QLatin1String("postgres://"));
}

QString DbConnection::serverName(const QString& connection)
{
    const QUrl url(connection);
    return QStringLiteral("%1:%2%3").arg(url.host().isEmpty() ? QStringLiteral("localhost") : url.host())
        .arg(url.port(5432))
        .arg(url.path());
}

DbError DbConnection::serverError(const QString& state, const QString& message, const QString& connection)
{
    if (connectionLost(state) || state.isEmpty())
        return { DbErrorNumber::ServerGone,
            QStringLiteral("The logbook server %1 cannot be reached; nothing was changed there (%2).")
                .arg(serverName(connection), message) };
    if (state.startsWith(QLatin1String("28")))
        return { DbErrorNumber::ServerGone,
            QStringLiteral("The logbook server %1 refused the login; check the user in Kestrel.ini and the "
                           "password in PGPASSWORD or .pgpass (%2).")
                .arg(serverName(connection), message) };
    if (state == QLatin1String("3D000"))
        return { DbErrorNumber::NoFile,
            QStringLiteral("The logbook database does not exist on the server: %1 (%2).")
                .arg(serverName(connection), message) };
    if (state == QLatin1String("40001") || state == QLatin1String("40P01") || state == QLatin1String("55P03"))
        return { SQLITE_BUSY,
            QStringLiteral("The database is in use by another position and stayed locked; nothing was "
                           "changed, try again (%1).")
                .arg(message) };
    return { 1, message };
}

DbConnection::DbConnection(const QString& file, int busyTimeoutMs, bool create)
    : name_(nextConnectionName())
    , file_(file)
{
    if (file.isEmpty()) {
        error_ = { DbErrorNumber::NoFile,
            QStringLiteral("No database file is set: the logbook has not been opened yet.") };
        return;
    }
    if (isServer(file)) {
        openServer(file);
        return;
    }
    const QFileInfo info(file);
    if (!info.absoluteDir().exists()) {
        error_ = { DbErrorNumber::NoFile,
            QStringLiteral("The folder of the database file does not exist: %1").arg(info.absolutePath()) };
        return;
    }
    if (!create && !info.exists()) {
        error_ = { DbErrorNumber::NoFile, QStringLiteral("The database file does not exist: %1").arg(file) };
        return;
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name_);
    db.setDatabaseName(file);
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs);
    // A file marked read-only is opened so, even for a user (root) the mark would not stop.
    if (info.exists()
        && (!info.isWritable()
            || !(info.permissions()
                & (QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther))))
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    db.setConnectOptions(options);
    if (!db.open()) {
        const QSqlError e = db.lastError();
        fail(e.nativeErrorCode().toInt(), e.driverText() + QLatin1Char(' ') + e.databaseText());
        return;
    }
    const QVariant h = db.driver()->handle();
    if (h.isValid() && qstrcmp(h.typeName(), "sqlite3*") == 0)
        handle_ = *static_cast<sqlite3* const*>(h.constData());
    if (!handle_) {
        error_ = { DbErrorNumber::NoFile, QStringLiteral("The SQLite driver gave no connection handle.") };
        return;
    }
    // SQLite's own checkpoint at close runs only when no other connection is open; the
    // destructor checkpoints in any case. (A file being made is closed with SQLite's
    // checkpoint, which also removes its journal, so it is complete when renamed.)
    if (!create)
        sqlite3_db_config(handle_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    if (!SqlCaseFold::install(handle_))
        qCWarning(lcLogbook) << "no casefold() for searches:" << sqlite3_errmsg(handle_);
    open_ = true;
}

void DbConnection::openServer(const QString& connection)
{
    server_ = true;
    QStringList& idle = idleServerConnections()[connection];
    while (!idle.isEmpty()) {
        // A kept connection the server has closed meanwhile (restart, kill) shows as such
        // without a round trip.
        const QString name = idle.takeLast();
        QSqlDatabase db = QSqlDatabase::database(name, false);
        auto* conn = db.isValid() && db.isOpen() ? static_cast<PGconn*>(*static_cast<PGconn* const*>(
                         db.driver()->handle().constData()))
                                                 : nullptr;
        // Twice: a server shutting down sends its farewell first, and its close is read only
        // by the next call.
        if (conn && PQconsumeInput(conn) && PQconsumeInput(conn) && PQstatus(conn) == CONNECTION_OK
            && PQtransactionStatus(conn) == PQTRANS_IDLE) {
            name_ = name;
            pg_ = conn;
            open_ = true;
            return;
        }
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    const QUrl url(connection);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name_);
    if (!url.host().isEmpty())
        db.setHostName(url.host());
    db.setPort(url.port(5432));
    db.setUserName(url.userName());
    db.setDatabaseName(url.path().mid(1));
    db.setConnectOptions(QStringLiteral("connect_timeout=3;application_name=Kestrel"));
    if (!db.open()) {
        const QSqlError e = db.lastError();
        const QString state = e.nativeErrorCode();
        error_ = serverError(
            state.isEmpty() && e.databaseText().contains(QLatin1String("password")) ? QStringLiteral("28P01") : state,
            e.databaseText().trimmed().isEmpty() ? e.driverText() : e.databaseText().trimmed(), connection);
        qCWarning(lcLogbook) << error_.text();
        return;
    }
    const QVariant h = db.driver()->handle();
    if (h.isValid() && qstrcmp(h.typeName(), "pg_conn*") == 0)
        pg_ = *static_cast<PGconn* const*>(h.constData());
    if (!pg_) {
        error_ = { DbErrorNumber::ServerGone, QStringLiteral("The PostgreSQL driver gave no connection handle.") };
        return;
    }
    open_ = true;
}

DbConnection::~DbConnection()
{
    if (server_) {
        prepared_.clear();
        if (open_ && !broken_ && PQstatus(pg_) == CONNECTION_OK) {
            if (PQtransactionStatus(pg_) != PQTRANS_IDLE)
                PgResult { PQexec(pg_, "ROLLBACK") };
            if (PQtransactionStatus(pg_) == PQTRANS_IDLE) {
                idleServerConnections()[file_] << name_;
                return;
            }
        }
        {
            QSqlDatabase db = QSqlDatabase::database(name_, false);
            if (db.isValid())
                db.close();
        }
        if (QSqlDatabase::contains(name_))
            QSqlDatabase::removeDatabase(name_);
        return;
    }
    // What a write action left in the write-ahead journal goes into the file as it ends, so that
    // a copy of backup.db alone holds every saved contact, and the journal is emptied: every
    // connection opened while no other is open re-reads the whole journal, which cost a print
    // run more than its own work. Not waited for: with a reader or writer in the way this is a
    // passive checkpoint, and the next write action's close takes the rest.
    if (open_ && sqlite3_get_autocommit(handle_) && (committed_ || sqlite3_total_changes(handle_) > 0)) {
        sqlite3_busy_timeout(handle_, 0);
        sqlite3_wal_checkpoint_v2(handle_, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
    }
    handle_ = nullptr;
    prepared_.clear();
    {
        QSqlDatabase db = QSqlDatabase::database(name_, false);
        if (db.isValid())
            db.close();
    }
    if (QSqlDatabase::contains(name_))
        QSqlDatabase::removeDatabase(name_);
}

QSqlDatabase DbConnection::database() const
{
    return QSqlDatabase::database(name_, false);
}

DbError DbConnection::sqliteError(int code, const QString& message, const QString& file)
{
    QString text;
    switch (primaryCode(code)) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        text = QStringLiteral("The database is in use by another program and stayed locked; nothing was "
                              "changed, try again (%1).")
                   .arg(message);
        break;
    case SQLITE_READONLY:
        text = QStringLiteral("The database file is read-only, so nothing can be saved: %1 (%2).")
                   .arg(file, message);
        break;
    case SQLITE_NOTADB:
        text = QStringLiteral("The file is not a logbook database: %1 (%2).").arg(file, message);
        break;
    case SQLITE_CORRUPT:
        text = QStringLiteral("The database file is damaged: %1 (%2).").arg(file, message);
        break;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        text = QStringLiteral("The database file cannot be opened: %1 (%2).").arg(file, message);
        break;
    case SQLITE_FULL:
    case SQLITE_IOERR:
        text = QStringLiteral("The database file could not be written: %1 (%2).").arg(file, message);
        break;
    default:
        text = message;
        break;
    }
    return { code == 0 ? 1 : code, text };
}

bool DbConnection::fail(int code, const QString& message)
{
    error_ = sqliteError(code, message.trimmed(), file_);
    qCWarning(lcLogbook) << error_.text();
    return false;
}

QString DbConnection::sql(const QString& text) const
{
    return server_ ? SqlDialect::toPostgres(text) : text;
}

bool DbConnection::inTransaction() const
{
    return server_ ? pg_ && PQtransactionStatus(pg_) != PQTRANS_IDLE
                   : handle_ && !sqlite3_get_autocommit(handle_);
}

bool DbConnection::failOnServer(const QString& state, const QString& message)
{
    error_ = serverError(state, message.trimmed(), file_);
    if (error_.number == DbErrorNumber::ServerGone || PQstatus(pg_) != CONNECTION_OK)
        broken_ = true;
    qCWarning(lcLogbook) << error_.text();
    return false;
}

bool DbConnection::execOnServer(const QString& text, const QVariantList& values)
{
    const QString translated = SqlDialect::toPostgres(text);
    if (translated.trimmed().isEmpty())
        return true;
    const bool guarded = statementRollback_ && inTransaction();
    if (guarded)
        PgResult { PQexec(pg_, "SAVEPOINT kestrel_statement") };
    QSqlQuery scratch(database());
    QSqlQuery* q = &scratch;
    bool ok;
    if (values.isEmpty()) {
        ok = scratch.exec(translated);
    } else {
        auto it = prepared_.find(text);
        if (it == prepared_.end()) {
            QSqlQuery fresh(database());
            if (!fresh.prepare(translated)) {
                const QSqlError e = fresh.lastError();
                if (guarded)
                    PgResult { PQexec(pg_, "ROLLBACK TO SAVEPOINT kestrel_statement") };
                return failOnServer(e.nativeErrorCode(), e.databaseText() + QStringLiteral(" in: ") + translated);
            }
            it = prepared_.insert(text, fresh);
        }
        q = &it.value();
        for (int i = 0; i < values.size(); ++i)
            q->bindValue(i, values[i]);
        ok = q->exec();
    }
    const QSqlError e = q->lastError();
    changes_ = ok ? q->numRowsAffected() : 0;
    q->finish();
    if (guarded)
        PgResult { PQexec(pg_, ok ? "RELEASE SAVEPOINT kestrel_statement" : "ROLLBACK TO SAVEPOINT kestrel_statement") };
    if (!ok)
        return failOnServer(e.nativeErrorCode(), e.databaseText() + QStringLiteral(" in: ") + translated);
    return true;
}

bool DbConnection::exec(const QString& sql, const QVariantList& values)
{
    if (!open_)
        return false;
    if (server_)
        return execOnServer(sql, values);
    // A statement with values is kept prepared: a run of writes repeats the same few texts,
    // and preparing one costs as much as running it.
    auto prepareFailed = [&](const QSqlQuery& q) {
        const QSqlError e = q.lastError();
        return fail(e.nativeErrorCode().toInt(), e.databaseText() + QStringLiteral(" in: ") + sql);
    };
    QSqlQuery scratch;
    QSqlQuery* q = &scratch;
    if (values.isEmpty()) {
        scratch = QSqlQuery(database());
        if (!scratch.prepare(sql))
            return prepareFailed(scratch);
    } else {
        auto it = prepared_.find(sql);
        if (it == prepared_.end()) {
            QSqlQuery fresh(database());
            if (!fresh.prepare(sql))
                return prepareFailed(fresh);
            it = prepared_.insert(sql, fresh);
        }
        q = &it.value();
    }
    for (int i = 0; i < values.size(); ++i)
        q->bindValue(i, values[i]);
    const bool ok = q->exec();
    const QSqlError e = q->lastError();
    q->finish(); // a kept statement must not hold the read lock of its last run
    if (!ok)
        return fail(e.nativeErrorCode().toInt(), e.databaseText() + QStringLiteral(" in: ") + sql);
    return true;
}

bool DbConnection::check(const QString& sql)
{
    return describe(sql, nullptr);
}

bool DbConnection::describe(const QString& sql, QStringList* names)
{
    if (!open_)
        return false;
    if (server_) {
        const QByteArray utf8 = SqlDialect::toPostgres(sql).toUtf8();
        PgResult prepared { PQprepare(pg_, "", utf8.constData(), 0, nullptr) };
        if (PQresultStatus(prepared.r) != PGRES_COMMAND_OK)
            return failOnServer(QString::fromLatin1(PQresultErrorField(prepared.r, PG_DIAG_SQLSTATE)),
                QString::fromUtf8(PQresultErrorMessage(prepared.r)) + QStringLiteral(" in: ") + sql);
        PgResult d { PQdescribePrepared(pg_, "") };
        if (PQresultStatus(d.r) != PGRES_COMMAND_OK)
            return failOnServer(QString::fromLatin1(PQresultErrorField(d.r, PG_DIAG_SQLSTATE)),
                QString::fromUtf8(PQresultErrorMessage(d.r)) + QStringLiteral(" in: ") + sql);
        if (names) {
            names->clear();
            for (int i = 0; i < PQnfields(d.r); ++i)
                *names << LogbookSchema::spelling(QString::fromUtf8(PQfname(d.r, i)));
        }
        return true;
    }
    sqlite3_stmt* st = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    const int rc = sqlite3_prepare_v2(handle_, utf8.constData(), int(utf8.size()), &st, nullptr);
    if (rc == SQLITE_OK && names) {
        names->clear();
        for (int i = 0; i < sqlite3_column_count(st); ++i)
            *names << QString::fromUtf8(sqlite3_column_name(st, i));
    }
    sqlite3_finalize(st);
    if (rc != SQLITE_OK)
        return fail(sqlite3_extended_errcode(handle_),
            QString::fromUtf8(sqlite3_errmsg(handle_)) + QStringLiteral(" in: ") + sql);
    return true;
}

bool DbConnection::readRows(const QString& sql, RowStore& rows, int first)
{
    if (!open_)
        return false;
    if (server_) {
        const QByteArray utf8 = SqlDialect::toPostgres(sql).toUtf8();
        PgResult res { PQexec(pg_, utf8.constData()) };
        if (PQresultStatus(res.r) != PGRES_TUPLES_OK)
            return failOnServer(QString::fromLatin1(PQresultErrorField(res.r, PG_DIAG_SQLSTATE)),
                QString::fromUtf8(PQresultErrorMessage(res.r)) + QStringLiteral(" in: ") + sql);
        rows.reset(PQnfields(res.r) - first);
        rows.reserve(PQntuples(res.r));
        for (int r = 0; r < PQntuples(res.r); ++r)
            rows.appendFromServer(res.r, r, first, first ? std::strtoll(PQgetvalue(res.r, r, 0), nullptr, 10) : 0);
        return true;
    }
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt* st = nullptr;
    auto sqliteFail = [&] {
        fail(sqlite3_extended_errcode(handle_), QString::fromUtf8(sqlite3_errmsg(handle_)) + QStringLiteral(" in: ") + sql);
        sqlite3_finalize(st);
        return false;
    };
    if (sqlite3_prepare_v2(handle_, utf8.constData(), int(utf8.size()), &st, nullptr) != SQLITE_OK)
        return sqliteFail();
    rows.reset(sqlite3_column_count(st) - first);
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW)
        rows.appendFromStatement(st, first, first ? sqlite3_column_int64(st, 0) : 0);
    if (rc != SQLITE_DONE)
        return sqliteFail();
    sqlite3_finalize(st);
    return true;
}

bool DbConnection::begin()
{
    if (server_)
        return exec(QStringLiteral("BEGIN"));
    // With the WAL journal, NORMAL keeps every commit safe from a crash of the program and the
    // file safe from damage; only a power cut may take back the last moments. FULL would sync
    // the disk at each saved contact (several milliseconds). Checkpoints are left to the close.
    return exec(QStringLiteral("PRAGMA synchronous=NORMAL"))
        && exec(QStringLiteral("PRAGMA wal_autocheckpoint=0")) && exec(QStringLiteral("BEGIN IMMEDIATE"));
}

bool DbConnection::commit()
{
    if (!exec(QStringLiteral("COMMIT")))
        return false;
    committed_ = true;
    return true;
}

void DbConnection::rollback()
{
    if (!open_ || !inTransaction())
        return;
    if (server_)
        PgResult { PQexec(pg_, "ROLLBACK") };
    else
        sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
}

qint64 DbConnection::lastInsertRowId() const
{
    if (!open_)
        return 0;
    if (server_) {
        PgResult r { PQexec(pg_, "SELECT lastval()") };
        return PQresultStatus(r.r) == PGRES_TUPLES_OK ? std::strtoll(PQgetvalue(r.r, 0, 0), nullptr, 10) : 0;
    }
    return sqlite3_last_insert_rowid(handle_);
}

int DbConnection::changes() const
{
    if (!open_)
        return 0;
    return server_ ? changes_ : sqlite3_changes(handle_);
}
