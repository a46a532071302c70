#pragma once
// A real logbook database file in the test's temporary folder, with the current schema and
// the contacts a test puts in, plus a Station pointed at it.
#include "core/Station.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestDatabase.h"

#include <QString>
#include <QStringList>

struct Contact {
    QString grid;
    QString band = "144";
    QString qsl, prop, comment, dxcc;
    QString poly; // what GEpoly holds before the test runs
};

class LogDb {
public:
    LogDb();
    // Adds contacts in this order (which decides the order of equal sort keys).
    bool add(const QList<Contact>& contacts);
    // GEpoly of every contact, in entry order.
    QStringList polys() const;
    // The connection text: backup.db in the folder, or a database on the test run's server.
    QString path() const { return connection; }

    TempDir dir;
    QString connection = TestDatabase::connectionFor(dir.file("backup.db"));
    RecordingPrompts prompts;
    Station station { prompts };
    int added = 0;
};
