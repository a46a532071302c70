#pragma once
// One contact as its card shows it: the nine fields a print run reads, already in their card
// text forms (date " dd.MM.yyyy", time "  HH:mm ", band "    #######,###").
#include <QString>

struct QslContact {
    QString date;
    QString time;
    QString callsign;
    QString band;
    QString mode;
    QString rsts;
    QString qrb;
    QString qtf;
    QString manager;
};
