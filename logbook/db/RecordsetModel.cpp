#include "logbook/db/RecordsetModel.h"

#include "logbook/db/LogDate.h"

RecordsetModel::RecordsetModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

void RecordsetModel::setRecordset(Recordset recordset)
{
    beginResetModel();
    rs_ = std::move(recordset);
    dateField_ = rs_.fieldIndex(QStringLiteral("date"));
    endResetModel();
}

void RecordsetModel::refresh()
{
    beginResetModel();
    dateField_ = rs_.fieldIndex(QStringLiteral("date"));
    endResetModel();
}

int RecordsetModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !rs_.isOpen() ? 0 : rs_.recordCount();
}

int RecordsetModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rs_.fieldCount();
}

QVariant RecordsetModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return QVariant();
    const QVariant v = rs_.valueAt(index.row(), index.column());
    if (role == Qt::DisplayRole && index.column() == dateField_ && v.typeId() == QMetaType::QString)
        return LogDate::toDisplay(v.toString());
    return v;
}

QVariant RecordsetModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    return orientation == Qt::Horizontal ? QVariant(rs_.fieldName(section)) : QVariant(section + 1);
}

bool RecordsetModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (parent.isValid() || row < 0 || count < 1 || row + count > rowCount())
        return false;
    for (int i = 0; i < count; ++i) {
        if (!rs_.move(row))
            return false;
        beginRemoveRows(QModelIndex(), row, row);
        const bool deleted = rs_.deleteCurrent();
        endRemoveRows();
        if (!deleted) {
            refresh(); // the row is still there: show the rows as they are
            return false;
        }
    }
    return true;
}
