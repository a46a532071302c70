#include "logbook/browse/LogList.h"

#include "logbook/db/SqlText.h"

namespace LogList {

Recordset open(const QString& connection, const QString& bandPattern)
{
    Recordset rs(connection);
    rs.setSort(SqlText::LogListSort);
    rs.setFilter(SqlText::logListFilter(bandPattern));
    if (rs.open(SqlText::LogList))
        rs.recordCount(); // read now, so a failure shows here and not in the grid
    return rs;
}

} // namespace LogList
