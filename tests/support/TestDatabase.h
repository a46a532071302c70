#pragma once
// The connection text a test's logbook uses. By default the SQLite file the test names; when
// KESTREL_TEST_PG names a fixture folder (ctest's pgserver fixture, see kestrel_pg_tests), a
// fresh database on that run's PostgreSQL server instead, so one test runs on both.
#include <QString>

class PgServer;

class TestDatabase {
public:
    static QString connectionFor(const QString& sqliteFile);
    // The fixture folder from KESTREL_TEST_PG; empty when the tests run on SQLite.
    static QString fixtureDir();
    // Writes what connectionFor reads: DIR/uri (the server without a database) and DIR/pgpass.
    static bool publish(const PgServer& server, const QString& dir, QString* error = nullptr);
};
