#pragma once
// The numbered schema migrations of the logbook database; PRAGMA user_version records the last
// one a file has had. Migration 1 is the map-column upgrade (logtab 31 -> 34 columns,
// PNT_Beacon 8 -> 9); migration 2 adds the ADIF entity number and the ADIF fields without a
// column of their own to logtab, the index of the QSL letter, and entity number, zones and
// continent to dxccdata. A new file is made at the current version; an older one is brought up
// when it is opened.
#include "logbook/db/DbError.h"

#include <QString>
#include <QStringList>

class DbConnection;

class SchemaMigration {
public:
    static constexpr int CurrentVersion = 2;

    struct Result {
        int from = 0; // the version found
        int to = 0; // the version the file has now
        DbError error;
    };

    // The version recorded in the file; -1 with error set when it cannot be read.
    static int version(const QString& file, DbError* error = nullptr);
    static int version(DbConnection& connection);
    // Runs every migration the file has not had, each in its own transaction together with its
    // version number, so a failure leaves the file at the last complete version. A file of a
    // newer version than this program knows is left as it is.
    static Result migrate(const QString& file);

    // The statements migration `number` runs on a connection to the file (they depend on the
    // columns the file has: a column that is already there is not added again).
    static QStringList statements(DbConnection& connection, int number);
};
