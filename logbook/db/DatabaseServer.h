#pragma once
// The logbook on a PostgreSQL server, for club stations whose positions log into one log at the
// same time: the server's address from Kestrel.ini [database], and making sure the database
// holds a Kestrel log in the current schema. Several positions starting at once on an empty
// database make the schema once (an advisory lock orders them).
#include "logbook/db/DbError.h"

#include <QString>

namespace DatabaseServer {

// The channel every change of logtab is announced on, as "<INSERT|UPDATE|DELETE> <ID>".
inline constexpr char ChangeChannel[] = "kestrel_log";

// "postgresql://user@host:port/database" from Kestrel.ini [database]; empty when the driver
// there is not "postgresql" (the log is a file).
QString configured();
QString address(const QString& host, int port, const QString& database, const QString& user);

// Whether the server's database holds a Kestrel log (a table logtab); an empty database is
// reported with number NoFile, one with other tables but no log as not Kestrel's.
DbError identify(const QString& connection);
// Makes the schema and the seed data in an empty database, or brings an existing log to the
// current schema version, with the notice of changes (ChangeChannel) in both cases. A database
// holding other tables and no log is left as it is.
DbError prepare(const QString& connection);

} // namespace DatabaseServer
