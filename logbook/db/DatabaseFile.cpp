#include "logbook/db/DatabaseFile.h"

#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "logbook/db/DatabaseServer.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SchemaMigration.h"
#include "logbook/db/SeedData.h"
#include "logbook/db/SqlText.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

#include <sqlite3.h>

namespace {
constexpr int ReadOnlyNumber = SQLITE_READONLY;

bool folderWritable(const QString& dir)
{
    const QFileInfo info(dir);
    if (!info.isDir() || !info.isWritable())
        return false;
    // Permission bits as well: root may write anywhere, but a folder marked read-only stays so.
    return info.permissions() & (QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther);
}

// What stands in the way of reading the file as a logbook (a read-only file can be read).
DbError readable(const QString& path)
{
    const DbError problem = DatabaseFile::check(path);
    return problem && problem.number != ReadOnlyNumber ? problem : DatabaseFile::identify(path);
}

DbError sqliteError(sqlite3* h, const QString& path)
{
    return DbConnection::sqliteError(sqlite3_extended_errcode(h), QString::fromUtf8(sqlite3_errmsg(h)), path);
}

// Opens a file for reading only. In a folder where SQLite cannot make the shared-memory file a
// WAL file opens only as immutable, which is right when no journal lies beside it.
int openForReading(const QString& path, sqlite3** h)
{
    int rc = sqlite3_open_v2(QFile::encodeName(path).constData(), h, SQLITE_OPEN_READONLY, nullptr);
    if (rc == SQLITE_OK) {
        sqlite3_busy_timeout(*h, DbConnection::DefaultBusyTimeoutMs);
        rc = sqlite3_exec(*h, "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr);
    }
    if (((rc & 0xff) != SQLITE_CANTOPEN && (rc & 0xff) != SQLITE_READONLY)
        || QFileInfo::exists(path + QStringLiteral("-wal")))
        return rc;
    sqlite3_close(*h);
    const QByteArray uri = QUrl::fromLocalFile(path).toEncoded() + "?immutable=1";
    return sqlite3_open_v2(uri.constData(), h, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
}

// Copies a database through SQLite, so that a journal beside the source is taken along; the
// copy appears complete or not at all.
DbError copyDatabase(const QString& from, const QString& to)
{
    const QString temp = to + QStringLiteral(".new");
    QFile::remove(temp);
    sqlite3* src = nullptr;
    sqlite3* dst = nullptr;
    DbError e;
    if (openForReading(from, &src) != SQLITE_OK)
        e = sqliteError(src, from);
    else if (sqlite3_open_v2(QFile::encodeName(temp).constData(), &dst,
                 SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr)
        != SQLITE_OK)
        e = sqliteError(dst, temp);
    else {
        sqlite3_backup* b = sqlite3_backup_init(dst, "main", src, "main");
        const int rc = b ? sqlite3_backup_step(b, -1) : SQLITE_ERROR;
        if (!b || sqlite3_backup_finish(b) != SQLITE_OK || rc != SQLITE_DONE)
            e = sqliteError(dst, to);
    }
    sqlite3_close(src);
    sqlite3_close(dst);
    if (!e && !QFile::rename(temp, to))
        e = { DbErrorNumber::NoFile,
            QStringLiteral("The copy of the log cannot be put in place: %1").arg(to) };
    if (e)
        QFile::remove(temp);
    return e;
}
} // namespace

DatabaseFile::Places DatabaseFile::systemPlaces()
{
    Places p;
    p.programDir = QCoreApplication::applicationDirPath();
    p.appDataDir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    p.configured = DatabaseServer::configured();
    if (p.configured.isEmpty())
        p.configured = ExtensionSettings::value(ExtensionKey::DatabaseFile);
    return p;
}

QString DatabaseFile::resolve(const Places& places)
{
    if (DbConnection::isServer(places.configured))
        return places.configured;
    if (!places.configured.isEmpty())
        return QFileInfo(places.configured).absoluteFilePath();
    // A log already beside the program stays in use; a new one goes to the user's data folder,
    // where neither an installation nor a cleaned build folder can take it away.
    const QString besideProgram = QDir(places.programDir).absoluteFilePath(FileName);
    if (!places.programDir.isEmpty() && folderWritable(places.programDir) && QFileInfo::exists(besideProgram))
        return besideProgram;
    return QDir(places.appDataDir).absoluteFilePath(FileName);
}

bool DatabaseFile::isReadOnly(const QString& path)
{
    const QFileInfo info(path);
    return !info.isWritable()
        || !(info.permissions()
            & (QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther));
}

DbError DatabaseFile::check(const QString& path)
{
    if (DbConnection::isServer(path)) {
        const DbError e = DatabaseServer::identify(path);
        return e.number == DbErrorNumber::NoFile ? DbError() : e;
    }
    const QFileInfo info(path);
    if (!info.absoluteDir().exists())
        return { DbErrorNumber::NoFile,
            QStringLiteral("The folder of the database file does not exist: %1").arg(info.absolutePath()) };
    if (!info.exists())
        return { DbErrorNumber::NoFile, QStringLiteral("The database file does not exist: %1").arg(path) };
    if (info.isDir())
        return { DbErrorNumber::NoFile, QStringLiteral("The database file is a folder: %1").arg(path) };
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return { 14,
            QStringLiteral("The database file cannot be read: %1 (%2).").arg(path, f.errorString()) };
    if (info.size() == 0)
        return { 26,
            QStringLiteral("The database file is empty (0 bytes): %1. Restore it from a backup, or remove it "
                           "so that a new one is made.")
                .arg(path) };
    if (f.read(16) != QByteArray("SQLite format 3\0", 16))
        return { 26,
            QStringLiteral("The file is not a logbook database: %1 (it is no SQLite file). It was left as it "
                           "is.")
                .arg(path) };
    if (isReadOnly(path))
        return { ReadOnlyNumber,
            QStringLiteral(
                "The database file is read-only: %1. The log can be read, but nothing can be saved.")
                .arg(path) };
    return {};
}

DbError DatabaseFile::identify(const QString& path)
{
    if (DbConnection::isServer(path))
        return DatabaseServer::identify(path);
    // Read-only, so that not even a journal mode is changed in a file that is not ours.
    sqlite3* h = nullptr;
    DbError e;
    int rc = openForReading(path, &h);
    if (rc == SQLITE_OK) {
        const QByteArray sql = SqlText::LogList.toUtf8();
        sqlite3_stmt* st = nullptr;
        rc = sqlite3_prepare_v2(h, sql.constData(), int(sql.size()), &st, nullptr);
        sqlite3_finalize(st);
    }
    if (rc != SQLITE_OK) {
        e = QString::fromUtf8(sqlite3_errmsg(h)).startsWith(QLatin1String("no such table"))
            ? DbError { SQLITE_NOTADB,
                  QStringLiteral("The file is not a Kestrel logbook: %1 (it has no table logtab). It was "
                                 "left as it is.")
                      .arg(path) }
            : sqliteError(h, path);
    }
    sqlite3_close(h);
    return e;
}

QStringList DatabaseFile::moveAsideJournal(const QString& path)
{
    QStringList moved;
    const QString stamp = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    for (const QString& suffix : { QStringLiteral("-wal"), QStringLiteral("-shm") }) {
        const QString from = path + suffix;
        const QString to = from + QStringLiteral(".unmerged-") + stamp;
        if (QFileInfo::exists(from) && QFile::rename(from, to)) {
            qCWarning(lcLogbook) << "journal without its database moved aside:" << to;
            moved << to;
        }
    }
    return moved;
}

bool DatabaseFile::create(const QString& path, DbError* error)
{
    auto failed = [&](const DbError& e) {
        if (error)
            *error = e;
        qCWarning(lcLogbook) << "creating" << path << "failed:" << e.text();
        return false;
    };
    if (DbConnection::isServer(path)) {
        const DbError e = DatabaseServer::prepare(path);
        return e ? failed(e) : true;
    }
    const QFileInfo info(path);
    if (info.exists())
        return failed(
            { DbErrorNumber::NoFile, QStringLiteral("The database file exists already: %1").arg(path) });
    if (!info.absoluteDir().exists() && !QDir().mkpath(info.absolutePath()))
        return failed({ DbErrorNumber::NoFile,
            QStringLiteral("The folder of the database file cannot be made: %1").arg(info.absolutePath()) });
    // Built under a temporary name and renamed when complete.
    const QString temp = path + QStringLiteral(".new");
    for (const QString& suffix : { QString(), QStringLiteral("-wal"), QStringLiteral("-shm") })
        QFile::remove(temp + suffix);
    {
        DbConnection c(temp, DbConnection::DefaultBusyTimeoutMs, true);
        bool ok = c.isOpen() && c.begin();
        for (const QString& sql : LogbookSchema::currentTables()) {
            if (!ok)
                break;
            ok = c.exec(sql);
        }
        ok = ok && c.exec(QStringLiteral("PRAGMA user_version = %1").arg(SchemaMigration::CurrentVersion));
        DbError seedError;
        if (ok && !SeedData::fill(c, &seedError)) {
            c.rollback();
            QFile::remove(temp);
            return failed(seedError);
        }
        ok = ok && c.commit() && c.exec(QStringLiteral("PRAGMA journal_mode=WAL"));
        if (!ok) {
            const DbError e = c.error();
            c.rollback();
            QFile::remove(temp);
            return failed(e);
        }
    }
    // A journal left beside the name would be read as the new file's own.
    moveAsideJournal(path);
    if (QFileInfo::exists(path + QStringLiteral("-wal"))) {
        QFile::remove(temp);
        return failed({ DbErrorNumber::NoFile,
            QStringLiteral("A journal without its database lies beside %1 and cannot be moved aside; no new "
                           "log was made.")
                .arg(path) });
    }
    if (!QFile::rename(temp, path)) {
        QFile::remove(temp);
        return failed({ DbErrorNumber::NoFile,
            QStringLiteral("The new database file cannot be put in place: %1").arg(path) });
    }
    qCInfo(lcLogbook) << "new logbook database made:" << path;
    return true;
}

DbError DatabaseFile::prepare(const QString& path)
{
    if (DbConnection::isServer(path))
        return DatabaseServer::prepare(path);
    const QFileInfo info(path);
    if (!info.exists() && info.absoluteDir().exists()) {
        DbError e;
        return create(path, &e) ? DbError() : e;
    }
    const DbError problem = check(path);
    if (const DbError e = readable(path))
        return e;
    if (problem) // read-only: it can be read as it is, nothing can be changed
        return problem;
    if (const SchemaMigration::Result m = SchemaMigration::migrate(path); m.error)
        return m.error;
    // Files made elsewhere may still use a rollback journal; a failure here only costs speed.
    DbConnection(path).exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    checkpoint(path);
    return {};
}

DbError DatabaseFile::checkpoint(const QString& path)
{
    if (DbConnection::isServer(path))
        return {}; // the server keeps its own journal
    DbConnection c(path);
    if (!c.isOpen())
        return c.error();
    return c.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")) ? DbError() : c.error();
}

DbError DatabaseFile::connect(Station& station)
{
    return connect(station, systemPlaces());
}

DatabaseFile::Opening DatabaseFile::open(const Places& places)
{
    Opening o;
    o.path = resolve(places);
    if (DbConnection::isServer(o.path)) {
        o.error = prepare(o.path);
        return o;
    }
    const QString beside
        = places.programDir.isEmpty() ? QString() : QDir(places.programDir).absoluteFilePath(FileName);
    if (places.configured.isEmpty() && o.path != beside) {
        // The application-data folder is made on first use. A log beside the program that is
        // not used (its folder cannot be written) is carried over once rather than left behind
        // an empty new one.
        QDir().mkpath(places.appDataDir);
        if (!beside.isEmpty() && QFileInfo::exists(beside) && !QFileInfo::exists(o.path)) {
            o.error = readable(beside);
            if (!o.error)
                o.error = copyDatabase(beside, o.path);
            if (o.error) {
                o.path = beside;
                return o;
            }
            o.notice
                = QStringLiteral("The log %1 is in a folder where nothing can be saved. It was copied to %2, "
                                 "and new contacts are saved there.")
                      .arg(beside, o.path);
            qCInfo(lcLogbook) << "log copied from" << beside << "to" << o.path;
        }
    }
    if (!QFileInfo::exists(o.path)) {
        const QStringList moved = moveAsideJournal(o.path);
        if (!moved.isEmpty())
            o.notice
                = QStringLiteral("A journal without its database lay beside %1; it was moved aside to %2 and "
                                 "not taken into the new log.")
                      .arg(o.path, moved.join(QStringLiteral(", ")));
    }
    o.error = prepare(o.path);
    return o;
}

DbError DatabaseFile::connect(Station& station, const Places& places)
{
    const Opening o = open(places);
    station.dbConnection = o.path;
    if (o.error)
        station.prompts.information(o.error.description);
    else if (!o.notice.isEmpty())
        station.prompts.information(o.notice);
    return o.error;
}
