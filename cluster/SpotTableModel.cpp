#include "cluster/SpotTableModel.h"

#include <algorithm>

SpotTableModel::SpotTableModel(int maxSpots, QObject* parent)
    : QAbstractTableModel(parent)
    , maxSpots_(std::max(1, maxSpots))
{
}

void SpotTableModel::addSpots(const QList<Spot>& spots)
{
    if (spots.isEmpty())
        return;
    // Only the newest maxSpots of a large batch can ever be shown.
    const qsizetype first = std::max<qsizetype>(0, spots.size() - maxSpots_);
    const int adding = static_cast<int>(spots.size() - first);
    const int keep = std::min(static_cast<int>(spots_.size()), maxSpots_ - adding);
    if (keep < static_cast<int>(spots_.size())) {
        beginRemoveRows({}, keep, static_cast<int>(spots_.size()) - 1);
        spots_.resize(static_cast<size_t>(keep));
        endRemoveRows();
    }
    beginInsertRows({}, 0, adding - 1);
    for (qsizetype i = first; i < spots.size(); ++i)
        spots_.push_front(spots[i]);
    endInsertRows();
}

void SpotTableModel::clear()
{
    beginResetModel();
    spots_.clear();
    endResetModel();
}

int SpotTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(spots_.size());
}

int SpotTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SpotTableModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Spot& s = spotAt(index.row());
    if (role == Qt::TextAlignmentRole && index.column() == Frequency)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case Time:
        return s.time;
    case Frequency:
        return s.frequency;
    case Call:
        return s.call;
    case Spotter:
        return s.spotter;
    case Comment:
        return s.comment;
    case Band:
        return s.band;
    default:
        return {};
    }
}

QVariant SpotTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    static const char* const titles[ColumnCount] = { "Time", "kHz", "DX", "Spotter", "Comment", "Band" };
    return section >= 0 && section < ColumnCount ? QString::fromLatin1(titles[section]) : QVariant();
}
