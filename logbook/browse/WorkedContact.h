#pragma once
// One earlier contact as the worked-before check keeps it.
#include <QMetaType>
#include <QString>

struct WorkedContact {
    QString callsign;
    QString date; // yyyy-MM-dd as stored
    QString band; // the log's band text ("144")
    QString mode;
    QString grid;
    QString qsl;
    QString entity; // DXCC entity name, "" when unknown
    qint64 id = 0; // logtab's ID when known: the row heard of again (a server's notice) is not added twice
};
Q_DECLARE_METATYPE(WorkedContact)
