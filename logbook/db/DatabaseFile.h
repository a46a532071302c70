#pragma once
// Where the logbook database lives and how it comes to exist. The file is backup.db in the
// user's application-data folder (one already beside the program stays in use there, and is
// copied to the application-data folder once, telling the operator, where the program's folder
// is read-only); the key database/file of Kestrel.ini names another file. A missing file is
// created in the current schema and filled with the shipped DXCC and beacon data; a file that
// cannot serve (empty, not a database, not Kestrel's, read-only, folder missing) is reported,
// never written to.
#include "logbook/db/DbError.h"

#include <QString>
#include <QStringList>

class Station;

class DatabaseFile {
public:
    static inline const QString FileName = QStringLiteral("backup.db");

    struct Places {
        QString programDir; // the running program's folder
        QString appDataDir; // the user's application-data folder
        QString configured; // Kestrel.ini database/file, empty if not set
    };
    // The places of this process (program folder, QStandardPaths, Kestrel.ini in the current folder).
    static Places systemPlaces();
    // The database file for these places.
    static QString resolve(const Places& places);

    // What stands in the way of using an existing file; no error for a usable one. A
    // read-only file is reported too (it can be read, but nothing can be saved).
    static DbError check(const QString& path);
    static bool isReadOnly(const QString& path);

    // Whether an SQLite file is a Kestrel logbook (it has a logtab), found without writing to it.
    static DbError identify(const QString& path);

    // Makes a new database file in the current schema with the seed data. The file appears
    // complete or not at all; an existing file is never replaced. A journal left beside the
    // name (backup.db-wal, -shm) belongs to another file and is moved aside first.
    static bool create(const QString& path, DbError* error = nullptr);
    // Renames a leftover backup.db-wal and -shm to "<name>.unmerged-<time>" so that no new file
    // takes their contents for its own; returns the new names.
    static QStringList moveAsideJournal(const QString& path);

    // Makes sure the file at `path` can serve: creates it when missing; an existing file is
    // identified as a Kestrel logbook before anything is written to it, then brought to the
    // current schema version and switched to WAL journalling. Returns what is wrong, if anything.
    static DbError prepare(const QString& path);

    // Folds the write-ahead journal (backup.db-wal) into the file, so that a copy of backup.db
    // alone holds every contact. Each connection that leaves frames in the journal does this
    // as it closes; this one (also truncating the journal) is for the start and the end.
    static DbError checkpoint(const QString& path);

    // The outcome of opening the log for this process.
    struct Opening {
        QString path; // the file in use
        DbError error; // what stands in the way (the log cannot be used, or only read)
        QString notice; // what the operator should know although all went well (a copy was made)
    };
    static Opening open(const Places& places);

    // Done when the logbook window object is created: opens the log for this process, keeps its
    // path as Station::dbConnection (the connection text every database user reads) and shows
    // the error or else the notice through the station's prompts.
    static DbError connect(Station& station);
    static DbError connect(Station& station, const Places& places);
};
