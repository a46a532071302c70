#include "logbook/db/DbConnection.h"

#include "logbook/db/LogbookLogging.h"
#include "logbook/db/SqlCaseFold.h"

#include <QAtomicInteger>
#include <QDir>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>

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
} // namespace

DbConnection::DbConnection(const QString& file, int busyTimeoutMs, bool create)
    : name_(nextConnectionName())
    , file_(file)
{
    if (file.isEmpty()) {
        error_ = { DbErrorNumber::NoFile,
            QStringLiteral("No database file is set: the logbook has not been opened yet.") };
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

DbConnection::~DbConnection()
{
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

bool DbConnection::exec(const QString& sql, const QVariantList& values)
{
    if (!open_)
        return false;
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
    if (!open_)
        return false;
    sqlite3_stmt* st = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    const int rc = sqlite3_prepare_v2(handle_, utf8.constData(), int(utf8.size()), &st, nullptr);
    sqlite3_finalize(st);
    if (rc != SQLITE_OK)
        return fail(sqlite3_extended_errcode(handle_),
            QString::fromUtf8(sqlite3_errmsg(handle_)) + QStringLiteral(" in: ") + sql);
    return true;
}

bool DbConnection::begin()
{
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
    if (open_ && !sqlite3_get_autocommit(handle_))
        sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
}

qint64 DbConnection::lastInsertRowId() const
{
    return open_ ? sqlite3_last_insert_rowid(handle_) : 0;
}

int DbConnection::changes() const
{
    return open_ ? sqlite3_changes(handle_) : 0;
}
