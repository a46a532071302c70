#pragma once
// The `Search` button of the logbook window: with a search text, the contacts whose callsign
// (option 1) or locator (option 2) begins with it, on the current band; with an empty text,
// no new list but the counts: squares (option 2: SQNr, SQNQr) or DXCC entities (option 1:
// DXNr, DXNQr). A quote in the text is doubled, so O'NEILL can be searched for.
#include "logbook/db/Recordset.h"

#include <QString>

struct SearchPlan {
    enum class Counts { None, Squares, Entities };
    // The statement the recordset is opened on.
    QString sql;
    // The band filter (empty without a band).
    QString filter;
    // True when the grid shows the result; false for an empty search text.
    bool rebind = false;
    Counts counts = Counts::None;
};

namespace LogSearch {
constexpr int ByCallsign = 1;
constexpr int ByLocator = 2;

SearchPlan plan(const QString& text, int option, const QString& bandPattern);
// The recordset of a plan, opened and read; on failure it carries the error.
Recordset open(const QString& connection, const SearchPlan& plan);
} // namespace LogSearch
