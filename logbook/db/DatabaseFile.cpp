#include "logbook/db/DatabaseFile.h"

#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SchemaMigration.h"
#include "logbook/db/SeedData.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace {
bool folderWritable(const QString& dir)
{
    const QFileInfo info(dir);
    if (!info.isDir() || !info.isWritable())
        return false;
    // Permission bits as well: root may write anywhere, but a folder marked read-only stays so.
    return info.permissions() & (QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther);
}
} // namespace

DatabaseFile::Places DatabaseFile::systemPlaces()
{
    Places p;
    p.programDir = QCoreApplication::applicationDirPath();
    p.appDataDir = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    p.configured = ExtensionSettings::value(ExtensionKey::DatabaseFile);
    return p;
}

QString DatabaseFile::resolve(const Places& places)
{
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
        return { 8,
            QStringLiteral(
                "The database file is read-only: %1. The log can be read, but nothing can be saved.")
                .arg(path) };
    return {};
}

bool DatabaseFile::create(const QString& path, DbError* error)
{
    auto failed = [&](const DbError& e) {
        if (error)
            *error = e;
        qCWarning(lcLogbook) << "creating" << path << "failed:" << e.text();
        return false;
    };
    const QFileInfo info(path);
    if (info.exists())
        return failed(
            { DbErrorNumber::NoFile, QStringLiteral("The database file exists already: %1").arg(path) });
    if (!info.absoluteDir().exists() && !QDir().mkpath(info.absolutePath()))
        return failed({ DbErrorNumber::NoFile,
            QStringLiteral("The folder of the database file cannot be made: %1").arg(info.absolutePath()) });
    // Built under a temporary name and renamed when complete.
    const QString temp = path + QStringLiteral(".new");
    QFile::remove(temp);
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
    const QFileInfo info(path);
    if (!info.exists() && info.absoluteDir().exists()) {
        DbError e;
        return create(path, &e) ? DbError() : e;
    }
    DbError problem = check(path);
    if (problem)
        return problem;
    DbConnection c(path);
    if (!c.isOpen())
        return c.error();
    // Files made elsewhere may still use a rollback journal; a failure here only costs speed.
    DbConnection(path).exec(QStringLiteral("PRAGMA journal_mode=WAL"));
    checkpoint(path);
    if (!c.check(QStringLiteral("SELECT * FROM logtab")))
        return c.error();
    return SchemaMigration::migrate(path).error;
}

DbError DatabaseFile::checkpoint(const QString& path)
{
    DbConnection c(path);
    if (!c.isOpen())
        return c.error();
    return c.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")) ? DbError() : c.error();
}

DbError DatabaseFile::connect(Station& station)
{
    return connect(station, systemPlaces());
}

DbError DatabaseFile::connect(Station& station, const Places& places)
{
    const QString path = resolve(places);
    // The application-data folder is made on first use.
    if (places.configured.isEmpty()
        && QFileInfo(path).absolutePath() == QDir(places.appDataDir).absolutePath())
        QDir().mkpath(places.appDataDir);
    station.dbConnection = path;
    const DbError e = prepare(path);
    if (e)
        station.prompts.information(e.description);
    return e;
}
