#pragma once
// Where the logbook database lives and how it comes to exist. The file is backup.db in the
// user's application-data folder (one already beside the program stays in use there); the
// key database/file of Kestrel.ini names another file. A missing file is created
// in the current schema and filled with the shipped DXCC and beacon data; a file that cannot
// serve (empty, not a database, read-only, folder missing) is reported, never overwritten.
#include "logbook/db/DbError.h"

#include <QString>

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

    // Makes a new database file in the current schema with the seed data. The file appears
    // complete or not at all; an existing file is never replaced.
    static bool create(const QString& path, DbError* error = nullptr);

    // Makes sure the file at `path` can serve: creates it when missing, switches it to WAL
    // journalling when writable. Returns what is wrong, if anything.
    static DbError prepare(const QString& path);

    // Folds the write-ahead journal (backup.db-wal) into the file, so that a copy of backup.db
    // alone holds every contact. Done at start (by prepare) and meant for the program's end.
    static DbError checkpoint(const QString& path);

    // Done when the logbook window object is created: resolves the file for this process,
    // prepares it, keeps its path as Station::dbConnection (the connection text every database
    // user reads) and shows any problem through the station's prompts.
    static DbError connect(Station& station);
    static DbError connect(Station& station, const Places& places);
};
