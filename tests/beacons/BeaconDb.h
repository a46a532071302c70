#pragma once
// A real logbook database in the test's temporary folder with the beacons a test puts in
// (the shipped starter list removed), and a Station pointed at it.
#include "core/Station.h"
#include "tests/support/TempDir.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

struct Beacon {
    QString beacon, locator, qrg, equipment;
};

class BeaconDb {
public:
    // dir: where backup.db goes (the test's temporary folder, or one the caller keeps);
    // path() is the connection text (that file, or a database on the test run's server).
    explicit BeaconDb(const QString& dir);
    bool ok() const { return ok_; }
    QString path() const { return path_; }
    // Adds in this order (the table's stored order).
    bool add(const QList<Beacon>& beacons);
    // One column of every row in stored order; Null reads as "<null>".
    QStringList column(const QString& name) const;
    bool exec(const QString& sql) const;

private:
    QString path_;
    bool ok_ = false;
};

// A BeaconDb in a fresh temporary current folder, with a Station on it.
struct BeaconFixture {
    TempDir dir;
    BeaconDb db { dir.path() };
    RecordingPrompts prompts;
    Station station { prompts };

    BeaconFixture()
    {
        station.dbConnection = db.path();
        station.settings.setText(Setting::MyCall, "N0CALL");
        station.settings.setText(Setting::MyLocator, "JN48OW");
        station.myCall = "N0CALL";
        station.myLocator = "JN48OW";
        station.transparency = "128";
    }
};
