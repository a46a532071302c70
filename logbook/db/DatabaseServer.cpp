#include "logbook/db/DatabaseServer.h"

#include "core/ExtensionSettings.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SchemaMigration.h"
#include "logbook/db/SeedData.h"

#include <QSqlQuery>
#include <QUrl>

namespace {
// Any number of the club's own; every position takes the same lock to make the schema.
constexpr int SchemaLock = 0x4b455354; // "KEST"

// Tables in the database's own schema: none means empty, logtab among them means ours.
QStringList tables(DbConnection& c)
{
    QSqlQuery q(c.database());
    q.setForwardOnly(true);
    QStringList out;
    if (q.exec(QStringLiteral("SELECT table_name FROM information_schema.tables WHERE table_schema = "
                              "current_schema()"))) {
        while (q.next())
            out << q.value(0).toString();
    }
    return out;
}

// Every change of logtab is announced to the positions listening (LogChanges) as "INSERT 42",
// "UPDATE 42" or "DELETE 42"; the notice goes out when the change is committed.
QStringList changeNotice()
{
    return { QStringLiteral(
                 "CREATE OR REPLACE FUNCTION kestrel_log_changed() RETURNS trigger LANGUAGE plpgsql AS "
                 "'BEGIN PERFORM pg_notify(''%1'', TG_OP || '' '' || CASE WHEN TG_OP = ''DELETE'' "
                 "THEN OLD.id ELSE NEW.id END); RETURN NULL; END'")
                 .arg(QLatin1String(DatabaseServer::ChangeChannel)),
        QStringLiteral(
            "CREATE OR REPLACE TRIGGER kestrel_log_changed AFTER INSERT OR UPDATE OR DELETE ON logtab "
            "FOR EACH ROW EXECUTE FUNCTION kestrel_log_changed()") };
}

// What a server needs beside the tables: the schema version SQLite keeps in user_version, the
// case folding the beacon search uses, and the notice of changes.
QStringList serverExtras()
{
    return QStringList { QStringLiteral("CREATE TABLE kestrel_schema (version INTEGER NOT NULL)"),
        QStringLiteral("INSERT INTO kestrel_schema VALUES (%1)").arg(SchemaMigration::CurrentVersion),
        QStringLiteral("CREATE OR REPLACE FUNCTION casefold(text) RETURNS text LANGUAGE sql IMMUTABLE AS "
                       "'SELECT lower($1)'") }
    + changeNotice();
}

// A log made before the positions told each other of changes gets the notice once.
DbError addChangeNotice(const QString& connection)
{
    DbConnection c(connection);
    if (!c.isOpen())
        return c.error();
    QSqlQuery q(c.database());
    if (q.exec(QStringLiteral("SELECT 1 FROM pg_trigger WHERE tgname = 'kestrel_log_changed' "
                              "AND tgrelid = 'logtab'::regclass"))
        && q.next())
        return {};
    q.finish();
    bool ok = c.begin() && c.exec(QStringLiteral("SELECT pg_advisory_xact_lock(%1)").arg(SchemaLock));
    for (const QString& sql : changeNotice())
        ok = ok && c.exec(sql);
    if (ok && c.commit())
        return {};
    const DbError e = c.error();
    c.rollback();
    return e;
}
} // namespace

namespace DatabaseServer {

QString address(const QString& host, int port, const QString& database, const QString& user)
{
    QUrl url;
    url.setScheme(QStringLiteral("postgresql"));
    url.setHost(host);
    url.setPort(port);
    url.setUserName(user);
    url.setPath(QLatin1Char('/') + database);
    return url.toString();
}

QString configured()
{
    if (ExtensionSettings::value(ExtensionKey::DatabaseDriver).compare(QLatin1String("postgresql"), Qt::CaseInsensitive)
        != 0)
        return QString();
    bool ok = false;
    int port = ExtensionSettings::value(ExtensionKey::DatabasePort).toInt(&ok);
    if (!ok || port <= 0 || port > 65535)
        port = 5432;
    return address(ExtensionSettings::value(ExtensionKey::DatabaseHost), port,
        ExtensionSettings::value(ExtensionKey::DatabaseName, QStringLiteral("kestrel")),
        ExtensionSettings::value(ExtensionKey::DatabaseUser));
}

DbError identify(const QString& connection)
{
    DbConnection c(connection);
    if (!c.isOpen())
        return c.error();
    const QStringList have = tables(c);
    if (have.contains(QLatin1String("logtab")))
        return {};
    if (have.isEmpty())
        return { DbErrorNumber::NoFile,
            QStringLiteral("The logbook database on %1 is empty.").arg(DbConnection::serverName(connection)) };
    return { 26,
        QStringLiteral("The database %1 is not a Kestrel logbook (it has no table logtab). It was left as it is.")
            .arg(DbConnection::serverName(connection)) };
}

DbError prepare(const QString& connection)
{
    {
        DbConnection c(connection);
        if (!c.isOpen())
            return c.error();
        bool ok = c.begin() && c.exec(QStringLiteral("SELECT pg_advisory_xact_lock(%1)").arg(SchemaLock));
        const QStringList have = ok ? tables(c) : QStringList();
        if (ok && have.isEmpty()) {
            for (const QString& sql : LogbookSchema::currentTables() + serverExtras()) {
                if (!(ok = c.exec(sql)))
                    break;
            }
            DbError seedError;
            if (ok && !SeedData::fill(c, &seedError)) {
                c.rollback();
                return seedError;
            }
            if (ok && c.commit()) {
                qCInfo(lcLogbook) << "new logbook made on" << DbConnection::serverName(connection);
                return {};
            }
        }
        if (!ok) {
            const DbError e = c.error();
            c.rollback();
            return e;
        }
        c.rollback();
    }
    if (const DbError e = identify(connection))
        return e;
    const SchemaMigration::Result m = SchemaMigration::migrate(connection);
    if (m.error)
        return m.error;
    return addChangeNotice(connection);
}

} // namespace DatabaseServer
