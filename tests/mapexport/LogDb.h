#pragma once
// A real logbook database file in the test's temporary folder, with the current schema and
// the contacts a test puts in, plus a Station pointed at it.
#include "core/Station.h"
#include "tests/support/TempDir.h"

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
    QString path() const { return dir.file("backup.db"); }

    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
    int added = 0;
};
