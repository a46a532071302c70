#pragma once
// Re-checks the DXCC entity of every contact in logtab against dxccdata through the in-memory
// index (after a new country file, or for a log imported before entities were numbered):
// DXCC and DxccNr follow the call; zones and continent are filled only where empty, since a
// station's own zone may be finer than its prefix. One transaction; returns the contacts
// changed, -1 with `error` on failure.
#include "logbook/db/DbError.h"

#include <QString>

namespace DxccRecheck {
int run(const QString& connection, DbError* error = nullptr);
} // namespace DxccRecheck
