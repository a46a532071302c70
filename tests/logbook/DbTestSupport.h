#pragma once
// Helpers of the logbook database tests: a database file in a temporary folder, contacts
// written through a recordset, and a look at the columns as SQLite stores them.
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogDate.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"

#include <QSqlQuery>
#include <QStringList>

#include <gtest/gtest.h>

struct TestContact {
    QString date; // dd.MM.yyyy, as typed
    QString call;
    QString grid;
    QString band;
    QString qsl;
    QString dxcc;
};

inline void addContacts(const QString& path, const QList<TestContact>& contacts)
{
    Recordset rs(path);
    ASSERT_TRUE(rs.open(SqlText::LogList)) << rs.errorText().toStdString();
    for (const TestContact& c : contacts) {
        ASSERT_TRUE(rs.addNew());
        rs.setValue(QStringLiteral("Date"), LogDate::toStored(c.date));
        rs.setValue(QStringLiteral("Callsign"), c.call);
        rs.setValue(QStringLiteral("Grid"), c.grid);
        rs.setValue(QStringLiteral("Band"), c.band);
        rs.setValue(QStringLiteral("QSL"), c.qsl);
        rs.setValue(QStringLiteral("DXCC"), c.dxcc);
        ASSERT_TRUE(rs.update()) << rs.errorText().toStdString();
    }
}

// Every value of one field, from the first row to the last.
inline QStringList fieldColumn(Recordset& rs, const QString& name)
{
    QStringList out;
    for (bool ok = rs.first(); ok; ok = rs.next())
        out << rs.text(name);
    return out;
}

// Column names and declared types of a table, in order ("name type").
inline QStringList tableColumns(const QString& path, const QString& table)
{
    DbConnection c(path);
    QSqlQuery q(c.database());
    q.exec(QStringLiteral("PRAGMA table_info(%1)").arg(table));
    QStringList out;
    while (q.next())
        out << q.value(1).toString() + QLatin1Char(' ') + q.value(2).toString();
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
