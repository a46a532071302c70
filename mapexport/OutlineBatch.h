#pragma once
// SQNr's outline writes gathered and stored in one transaction per slice of records. One
// transaction per record (the recordset's own update) costs a disk sync each, which on a
// log with thousands of squares takes far longer than the whole export. Rows are found by
// their ID, the integer primary key of logtab.
#include "logbook/db/DbError.h"

#include <QList>
#include <QPair>
#include <QString>

class OutlineBatch {
public:
    explicit OutlineBatch(const QString& connection)
        : connection_(connection)
    {
    }

    void add(qint64 id, const QString& outline) { pending_.append({ id, outline }); }
    bool isEmpty() const { return pending_.isEmpty(); }
    // Writes every pending outline in one transaction; on failure nothing of it is stored and
    // error() tells why.
    bool flush();
    const DbError& error() const { return error_; }

private:
    QString connection_;
    QList<QPair<qint64, QString>> pending_;
    DbError error_;
};
