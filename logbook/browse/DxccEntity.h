#pragma once
// A DXCC entity as a dxccdata row gives it: name (column 2), ADIF entity number, CQ and ITU
// zone, continent (0 and "" where the row has none).
#include <QString>

struct DxccEntity {
    bool found = false;
    QString name;
    int dxccNr = 0;
    int cqZone = 0;
    int ituZone = 0;
    QString continent;
    bool operator==(const DxccEntity&) const = default;
};
