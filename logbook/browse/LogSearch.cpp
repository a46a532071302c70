#include "logbook/browse/LogSearch.h"

#include "logbook/db/SqlText.h"

namespace LogSearch {

SearchPlan plan(const QString& text, int option, const QString& bandPattern)
{
    SearchPlan p;
    p.filter = SqlText::logListFilter(bandPattern);
    if (text.isEmpty()) {
        p.sql = SqlText::LogWithGrid;
        p.counts = option == ByLocator ? SearchPlan::Counts::Squares
            : option == ByCallsign     ? SearchPlan::Counts::Entities
                                       : SearchPlan::Counts::None;
        return p;
    }
    p.rebind = true;
    p.sql = option == ByLocator ? SqlText::searchByGrid(text) : SqlText::searchByCallsign(text);
    return p;
}

Recordset open(const QString& connection, const SearchPlan& plan)
{
    Recordset rs(connection);
    rs.setFilter(plan.filter);
    if (rs.open(plan.sql))
        rs.recordCount();
    return rs;
}

} // namespace LogSearch
