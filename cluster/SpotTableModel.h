#pragma once
// The spots received from the node, newest first, at most maxSpots of them: time, frequency,
// DX call, spotter, comment and band, for a table beside the terminal.
#include "cluster/Spot.h"

#include <QAbstractTableModel>
#include <QList>
#include <deque>

class SpotTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Time, Frequency, Call, Spotter, Comment, Band, ColumnCount };

    explicit SpotTableModel(int maxSpots = 1000, QObject* parent = nullptr);

    // Adds spots given oldest first; the newest ends on top.
    void addSpots(const QList<Spot>& spots);
    void clear();
    const Spot& spotAt(int row) const { return spots_.at(static_cast<size_t>(row)); }
    int maxSpots() const { return maxSpots_; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    int maxSpots_;
    std::deque<Spot> spots_;
};
