#pragma once
// The DXCC entity of a callsign from dxccdata (the callsign stands left of LIKE, the stored
// pattern right), and the prefix pattern conversion that turns patterns delivered with the
// older "*" wildcard into the "%" form that LIKE needs. The callsign is read with the country
// rules (DxccCall) before the SQL text is built; the text itself is unchanged.
#include "logbook/browse/DxccEntity.h"
#include "logbook/db/DbError.h"

#include <QString>

class DbConnection;

struct DxccLookupResult {
    bool found = false;
    DxccEntity entity; // of the first row found: column 2 and the entity columns
    int rewritten = 0; // patterns of the rows found that were turned from "*" into "%"
    DbError error; // quietly ignored by the window: no message for a failed lookup
};

namespace DxccLookup {
// The lookup of the window: the first matching row gives the entity; every matching row whose
// pattern ends in "*" is rewritten at once.
DxccLookupResult lookup(const QString& connection, const QString& callsign);

// The text the lookup's SQL text is built with: the call read by the country rules, the whole
// call kept where dxccdata lists it as an exact call; empty when the call is in no entity.
QString lookupText(DbConnection& connection, const QString& callsign);

// "DL*" -> "DL%"; any other text is returned unchanged.
QString convertedPattern(const QString& pattern);

// The conversion over the whole table (column 1 of "SELECT * FROM dxccdata  "), in one
// transaction; idempotent. Returns the number of rows changed, -1 with `error` on failure.
int convertPatterns(const QString& connection, DbError* error = nullptr);
} // namespace DxccLookup
