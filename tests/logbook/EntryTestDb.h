#pragma once
// A logbook database for the window's logic tests: a new file in a temporary folder (schema
// and shipped DXCC list), a Station pointed at it, contacts put in with the columns a test
// names, and the locator procedure the window hands to the completion and the import.
#include "core/Station.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/Recordset.h"
#include "logbook/entry/MapPosition.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/RichtungQrb.h"
#include "tests/support/TempDir.h"

#include <QMap>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <gtest/gtest.h>

using Row = QMap<QString, QVariant>;

class EntryTestDb {
public:
    EntryTestDb()
    {
        DbError e;
        created = DatabaseFile::create(path(), &e);
        station.dbConnection = path();
        station.settings.setText(Setting::MyCall, QStringLiteral("N0CALL"));
        station.settings.setText(Setting::MyLocator, QStringLiteral("JN48OW"));
    }

    QString path() const { return dir.file(QStringLiteral("backup.db")); }

    // Inserts rows with the columns each names; a QVariant() is stored as NULL.
    bool add(const QList<Row>& rows, const QString& table = QStringLiteral("logtab")) const
    {
        DbConnection c(path());
        if (!c.begin())
            return false;
        for (const Row& r : rows) {
            QStringList marks(r.size(), QStringLiteral("?"));
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
                r.insert(columns[i], q.value(i));
            out << r;
        }
        return out;
    }

    // RichtungQRB on scratch fields, as the window's ADIF import uses it.
    LocatorProcedure locator()
    {
        return [this](const QString& grid, MapPosition& p) {
            LogMapFields scratch;
            if (!RichtungQRB(station, scratch, grid))
                return false;
            p = { station.coordText, scratch.distanceKm, scratch.bearing };
            return true;
        };
    }

    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
    bool created = false;
};
