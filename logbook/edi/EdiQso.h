#pragma once
// One contact of an EDI file: what the log gives (time already in UTC) and what the scoring
// adds.
#include <QDateTime>
#include <QString>

struct EdiQso {
    QDateTime utc;
    QString call;
    QString mode; // the log's mode text ("SSB", "CW", "FM" ...)
    QString rstSent;
    QString nrSent;
    QString rstRcvd;
    QString nrRcvd;
    QString exchange; // received exchange
    QString locator; // received locator as logged
    QString dxcc; // entity number or name; empty when unknown

    // Filled by the scoring.
    int points = 0;
    bool newExchange = false;
    bool newSquare = false;
    bool newDxcc = false;
    bool dupe = false;
};
