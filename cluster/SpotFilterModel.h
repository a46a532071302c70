#pragma once
// The spot table seen through a band filter ("" shows every band).
#include <QSortFilterProxyModel>

class SpotFilterModel : public QSortFilterProxyModel {
    Q_OBJECT
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setBand(const QString& band);
    QString band() const { return band_; }

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    QString band_;
};
