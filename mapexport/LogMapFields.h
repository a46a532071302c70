#pragma once
// The logbook window's fields that its map procedures share: the pass-over square that the
// square count hands to RichtungQRB, the last square outline, the stored distance and
// bearing, and the captions of the four count labels. The window keeps one for its life.
#include <QString>

struct LogMapFields {
    // Set by SQNr so that RichtungQRB takes passOverSquare instead of the locator box.
    bool passOver = false;
    QString passOverSquare;

    // Last outline made by RichtungQRB; an invalid locator leaves it as it was.
    QString outline;
    // Distance (km) and bearing (degrees) of the last valid contact locator.
    float distanceKm = 0.0f;
    float bearing = 0.0f;

    // Captions of the labels Sqw, SQc, dxw, DXc. A count over an empty selection leaves its
    // caption untouched; a band change clears all four (clearCounts).
    QString sqw;
    QString sqc;
    QString dxw;
    QString dxc;

    void clearCounts()
    {
        sqw.clear();
        sqc.clear();
        dxw.clear();
        dxc.clear();
    }
};
