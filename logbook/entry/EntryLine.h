#pragma once
// The texts of the logbook's entry line, one contact at a time: the twelve boxes, the two
// contest number boxes and the DXCC caption of `cou`, named as the window's controls.
#include <QString>

struct EntryLine {
    QString DA; // date
    QString GM; // time
    QString Ca; // callsign
    QString Gr; // locator
    QString Rss; // report sent
    QString Rr; // report received
    QString Ba; // band text
    QString mo; // mode
    QString Na; // name
    QString Co; // comment
    QString Qs; // QSL letter
    QString Pr; // propagation code
    QString cou; // DXCC entity (a label)
    QString Ns; // contest serial number sent (optional)
    QString Nr; // contest serial number received (optional)

    bool operator==(const EntryLine&) const = default;
};
