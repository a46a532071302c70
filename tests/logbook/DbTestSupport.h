#pragma once
// Helpers of the logbook tests: a new database file (schema, DXCC list, beacons) in a temporary
// folder, rows put in and read back by column name, and a look at a table's declared columns.
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestDatabase.h"

#include <QMap>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <gtest/gtest.h>

using Row = QMap<QString, QVariant>;

// A logtab row of 15.11.2026 with the columns most tests need and any others given.
inline Row contact(const QString& call, const QVariant& grid, const QString& band, const Row& more = {})
{
    Row r { { "Callsign", call }, { "Grid", grid }, { "Band", band }, { "Date", "2026-11-15" } };
    r.insert(more);
    return r;
}

// Every value of one field, from the recordset's first row to its last.
inline QStringList fieldColumn(const Recordset& rs, const QString& name)
{
    QStringList out;
    const int f = rs.fieldIndex(name);
    for (int i = 0; i < rs.recordCount(); ++i)
        out << rs.valueAt(i, f).toString();
    return out;
}

// Column names and declared types of a table, in order ("name type").
inline QStringList tableColumns(const QString& path, const QString& table)
{
    DbConnection c(path);
    QSqlQuery q(c.database());
    q.exec(c.sql(QStringLiteral("PRAGMA table_info(%1)").arg(table)));
    QStringList out;
    while (q.next())
        out << LogbookSchema::spelling(q.value(1).toString()) + QLatin1Char(' ') + q.value(2).toString();
    return out;
}

inline bool execAll(const QString& path, const QStringList& statements, bool create = false)
{
    DbConnection c(path, DbConnection::DefaultBusyTimeoutMs, create);
    for (const QString& s : statements) {
        if (!c.exec(s))
            return false;
    }
    return true;
}

class TestDb {
public:
    TestDb() { created = DatabaseFile::create(path()); }

    // The connection text: backup.db in the folder, or a database on the test run's server.
    QString path() const { return connection; }

    // Inserts rows with the columns each names (a QVariant() is stored as NULL) in one transaction.
    bool add(const QList<Row>& rows, const QString& table = QStringLiteral("logtab")) const
    {
        DbConnection c(path());
        if (!c.begin())
            return false;
        for (const Row& r : rows) {
            const QStringList marks(r.size(), QStringLiteral("?"));
            const QString sql
                = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                      .arg(table, r.keys().join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
            if (!c.exec(sql, r.values()))
                return false;
        }
        return c.commit();
    }

    // Every row of logtab in entry order, with the columns asked for.
    QList<Row> rows(const QStringList& columns) const
    {
        DbConnection c(path());
        QSqlQuery q(c.database());
        q.exec(QStringLiteral("SELECT %1 FROM logtab ORDER BY ID").arg(columns.join(QStringLiteral(", "))));
        QList<Row> out;
        while (q.next()) {
            Row r;
            for (int i = 0; i < columns.size(); ++i)
                r.insert(columns[i], q.isNull(i) ? QVariant() : q.value(i)); // a server's NULL has a type
            out << r;
        }
        return out;
    }

    TempDir dir;
    QString connection = TestDatabase::connectionFor(dir.file(QStringLiteral("backup.db")));
    bool created = false;
};
