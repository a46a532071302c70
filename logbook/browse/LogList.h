#pragma once
// The log list of the logbook window: every contact of the current band, newest first, as a
// recordset on "SELECT * FROM logtab" with the sort "date  desc " and the band filter (none
// when no band is chosen).
#include "logbook/db/Recordset.h"

namespace LogList {
// The recordset, opened; on failure it is closed and carries the error.
Recordset open(const QString& connection, const QString& bandPattern);
} // namespace LogList
