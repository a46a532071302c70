#pragma once
// A table model over a Recordset, for the grids of the log and the beacon list: rows and
// fields in the recordset's order (filter and sort included), the Date field shown as
// dd.MM.yyyy, and rows removed through the recordset, which deletes them from the table.
// The model owns its recordset; a new list load hands it a new one.
#include "logbook/db/Recordset.h"

#include <QAbstractTableModel>

class RecordsetModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit RecordsetModel(QObject* parent = nullptr);

    // Takes over the recordset (opened, with its filter and sort) and shows its rows.
    void setRecordset(Recordset recordset);
    Recordset& recordset() { return rs_; }
    const Recordset& recordset() const { return rs_; }
    // Shows the rows again after the recordset was changed (filter, sort, requery).
    void refresh();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    // Deletes the rows from the table; stops at the first failure (recordset().error() tells why).
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;

private:
    Recordset rs_;
    int dateField_ = -1;
};
