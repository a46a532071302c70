#pragma once
// The DXCC entity of a callsign from dxccdata (the callsign stands left of LIKE, the stored
// pattern right), and the prefix pattern conversion that turns patterns delivered with the
// older "*" wildcard into the "%" form that LIKE needs.
#include "logbook/db/DbError.h"

#include <QString>

struct DxccLookupResult {
    bool found = false;
    QString entity; // column 2 of the first row found
    int rewritten = 0; // patterns of the rows found that were turned from "*" into "%"
    DbError error; // quietly ignored by the window: no message for a failed lookup
};

namespace DxccLookup {
// The lookup of the window: the first matching row gives the entity; every matching row whose
// pattern ends in "*" is rewritten at once.
DxccLookupResult lookup(const QString& connection, const QString& callsign);

// "DL*" -> "DL%"; any other text is returned unchanged.
QString convertedPattern(const QString& pattern);

// The conversion over the whole table (column 1 of "SELECT * FROM dxccdata  "), in one
// transaction; idempotent. Returns the number of rows changed, -1 with `error` on failure.
int convertPatterns(const QString& connection, DbError* error = nullptr);
} // namespace DxccLookup
