#include "logbook/browse/LogGridModel.h"

QString LogGridModel::sortText(const QString& field, Qt::SortOrder order)
{
    QString name = field;
    name.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + name + QLatin1Char('"')
        + (order == Qt::AscendingOrder ? QStringLiteral(" asc") : QStringLiteral(" desc"));
}

void LogGridModel::sort(int column, Qt::SortOrder order)
{
    Recordset& rs = recordset();
    if (!rs.isOpen() || column < 0 || column >= rs.fieldCount())
        return;
    const QString before = rs.sort();
    sortError_ = DbError();
    if (!rs.setSort(sortText(rs.fieldName(column), order)) || !rs.requery()) {
        sortError_ = rs.error();
        rs.setSort(before);
        rs.requery();
    }
    refresh();
    if (sortError_)
        emit sortFailed(sortError_.text());
}
