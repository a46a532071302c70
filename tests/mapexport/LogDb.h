#pragma once
// A real logbook database file in the test's temporary folder, with the current schema and
// the contacts a test puts in, plus a Station pointed at it.
#include "core/Station.h"
#include "tests/support/TempDir.h"

#include <QString>
#include <QStringList>

struct Contact {
    Contact(const QString& grid = {}, const QString& band = "144", const QString& qsl = {},
        const QString& prop = {}, const QString& comment = {}, const QString& dxcc = {},
        const QString& poly = {})
        : grid(grid)
        , band(band)
        , qsl(qsl)
        , prop(prop)
        , comment(comment)
        , dxcc(dxcc)
        , poly(poly)
    {
    }
    QString grid;
    QString band;
    QString qsl;
    QString prop;
    QString comment;
    QString dxcc;
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
