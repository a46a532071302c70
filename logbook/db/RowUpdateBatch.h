#pragma once
// Column updates of many rows, found by their integer primary key ID, gathered and written in
// one transaction. One transaction per row (the recordset's own update) syncs the disk for
// each, which on a log of thousands of contacts takes far longer than the work itself.
#include "logbook/db/DbError.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

class RowUpdateBatch {
public:
    // Writes "UPDATE <table> SET <column> = ?, ... WHERE ID = ?" through `connection`.
    RowUpdateBatch(const QString& connection, const QString& table, const QStringList& columns);

    // One value per column, in the order given to the constructor.
    void add(qint64 id, const QVariantList& values) { pending_.append({ id, values }); }
    // Writes what is pending; on failure nothing of it is stored and error() tells why.
    bool flush();
    const DbError& error() const { return error_; }

private:
    struct Row {
        qint64 id;
        QVariantList values;
    };
    QString connection_;
    QString sql_;
    QList<Row> pending_;
    DbError error_;
};
