#include "logbook/db/SchemaMigration.h"

#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookLogging.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SchemaUpgrade.h"

#include <QSqlQuery>

namespace {
// Declared column names of a table; empty when the table does not exist.
QStringList columnNames(DbConnection& c, const QString& table)
{
    QSqlQuery q(c.database());
    q.setForwardOnly(true);
    QStringList out;
    if (q.exec(c.sql(QStringLiteral("PRAGMA table_info(%1)").arg(table)))) {
        while (q.next())
            out << q.value(1).toString();
    }
    return out;
}

// "ALTER TABLE t ADD COLUMN ..." for each column the table lacks (compared without case, as
// SQLite does); nothing for a table that does not exist.
QStringList addMissing(DbConnection& c, const QString& table, const QList<QPair<QString, QString>>& columns)
{
    const QStringList have = columnNames(c, table);
    QStringList out;
    if (have.isEmpty())
        return out;
    for (const auto& [name, type] : columns) {
        if (!have.contains(name, Qt::CaseInsensitive))
            out << QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3").arg(table, name, type);
    }
    return out;
}
} // namespace

int SchemaMigration::version(DbConnection& c)
{
    QSqlQuery q(c.database());
    return q.exec(c.sql(QStringLiteral("PRAGMA user_version"))) && q.next() ? q.value(0).toInt() : -1;
}

int SchemaMigration::version(const QString& file, DbError* error)
{
    DbConnection c(file);
    const int v = c.isOpen() ? version(c) : -1;
    if (v < 0 && error)
        *error = c.isOpen()
            ? DbError { 1, QStringLiteral("The schema version of %1 cannot be read.").arg(file) }
            : c.error();
    return v;
}

QStringList SchemaMigration::statements(DbConnection& c, int number)
{
    switch (number) {
    case 1: {
        // The map-column upgrade by declared columns: unlike the check at each beacon-list load,
        // an old table without rows is brought up too.
        QStringList out;
        if (columnNames(c, QStringLiteral("logtab")).size() == LogbookSchema::LogtabColumnsOld)
            out << SchemaUpgrade::logtabStatements();
        if (columnNames(c, QStringLiteral("PNT_Beacon")).size() == LogbookSchema::BeaconColumnsOld)
            out << SchemaUpgrade::beaconStatements();
        return out;
    }
    case 2:
        return addMissing(c, QStringLiteral("logtab"),
                   { { QStringLiteral("DxccNr"), QStringLiteral("INTEGER") },
                       { QStringLiteral("AdifExtra"), QStringLiteral("TEXT") } })
            + (columnNames(c, QStringLiteral("logtab")).isEmpty() ? QStringList()
                                                                  : QStringList { LogbookSchema::qslIndex() })
            + addMissing(c, QStringLiteral("dxccdata"),
                { { QStringLiteral("DxccNr"), QStringLiteral("INTEGER") },
                    { QStringLiteral("CQZone"), QStringLiteral("INTEGER") },
                    { QStringLiteral("ITUZone"), QStringLiteral("INTEGER") },
                    { QStringLiteral("Cont"), QStringLiteral("TEXT") } });
    default:
        return {};
    }
}

SchemaMigration::Result SchemaMigration::migrate(const QString& file)
{
    Result r;
    DbConnection c(file);
    if (!c.isOpen()) {
        r.error = c.error();
        return r;
    }
    r.from = r.to = version(c);
    if (r.from < 0) {
        r.error = { 1, QStringLiteral("The schema version of %1 cannot be read.").arg(file) };
        return r;
    }
    if (r.from > CurrentVersion)
        qCWarning(lcLogbook) << file << "has schema version" << r.from << "- newer than this program's"
                             << CurrentVersion << "; left as it is";
    for (int n = r.from + 1; n <= CurrentVersion; ++n) {
        bool ok = c.begin();
        const QStringList sql = ok ? statements(c, n) : QStringList();
        for (const QString& s : sql) {
            if (!ok)
                break;
            ok = c.exec(s);
        }
        ok = ok && c.exec(QStringLiteral("PRAGMA user_version = %1").arg(n)) && c.commit();
        if (!ok) {
            r.error = c.error();
            c.rollback();
            qCWarning(lcLogbook) << "schema migration" << n << "failed:" << r.error.text();
            return r;
        }
        r.to = n;
        qCInfo(lcLogbook) << file << "migrated to schema version" << n;
    }
    return r;
}
