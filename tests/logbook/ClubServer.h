#pragma once
// A throwaway PostgreSQL server holding an empty Kestrel log "club", for the tests of a server
// that goes away while positions log; libpq finds its password through PGPASSFILE.
#include "logbook/db/DatabaseServer.h"
#include "tests/support/PgServer.h"

// Starts the server and makes the log; its uri, or empty with *error set.
inline QString startClubLog(PgServer& server, QString* error)
{
    qunsetenv("PGPASSWORD");
    if (!server.start(error))
        return {};
    qputenv("PGPASSFILE", server.passFile().toLocal8Bit());
    const QString uri = server.createDatabase(QStringLiteral("club"), error);
    if (uri.isEmpty())
        return {};
    if (const DbError e = DatabaseServer::prepare(uri)) {
        *error = e.text();
        return {};
    }
    return uri;
}
