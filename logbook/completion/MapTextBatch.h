#pragma once
// Map texts of many log rows written in one transaction: GEdata and GEgridXY by the row's ID.
// One transaction per record would sync the disk for every contact of an imported log.
#include "logbook/db/DbError.h"

#include <QList>
#include <QString>

class MapTextBatch {
public:
    explicit MapTextBatch(const QString& connection)
        : connection_(connection)
    {
    }

    void add(qint64 id, const QString& geData, const QString& gridXY)
    {
        pending_.append({ id, geData, gridXY });
    }
    bool isEmpty() const { return pending_.isEmpty(); }
    qsizetype size() const { return pending_.size(); }
    // Writes what is pending; on failure nothing of it is stored and error() tells why.
    bool flush();
    const DbError& error() const { return error_; }

private:
    struct Row {
        qint64 id;
        QString geData;
        QString gridXY;
    };
    QString connection_;
    QList<Row> pending_;
    DbError error_;
};
