#pragma once
// The log grid's model: the rows of a log list or search recordset, read from the recordset's
// compact store as the view asks for them, never copied into widgets. A click on a column
// header sorts in the database (the recordset's sort text), so 100 000 contacts sort there.
#include "logbook/db/RecordsetModel.h"

class LogGridModel : public RecordsetModel {
    Q_OBJECT
public:
    using RecordsetModel::RecordsetModel;

    // Orders by the column; on failure the rows stay as they were and sortError() tells why.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;
    const DbError& sortError() const { return sortError_; }

    // The sort text of a column: "\"Callsign\" asc", "\"Date\" desc".
    static QString sortText(const QString& field, Qt::SortOrder order);

signals:
    void sortFailed(const QString& text);

private:
    DbError sortError_;
};
