#include "cluster/SpotFilterModel.h"

#include "cluster/SpotTableModel.h"

void SpotFilterModel::setBand(const QString& band)
{
    if (band == band_)
        return;
    // Qt 6.4 has no begin/endFilterChange; invalidateFilter() re-runs the filter.
    band_ = band;
    invalidateFilter();
}

bool SpotFilterModel::filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const
{
    if (band_.isEmpty())
        return true;
    const QModelIndex i = sourceModel()->index(sourceRow, SpotTableModel::Band, sourceParent);
    return sourceModel()->data(i).toString() == band_;
}
