#pragma once
// Writes Kestrel.txt and Kestrel.ini in a directory so that Kestrel started there uses the
// simulated station: Com1 and Com2 the two rig ports, Com3 the GPS, Com4 the rotator, the sensor
// port in Kestrel.ini, cluster server 1 the simulated node.
#include <QString>

struct SimPlaces {
    QString rig;
    QString rig2;
    QString rotator;
    QString sensor;
    QString gps;
    quint16 clusterPort = 0;
};

// Keeps every other setting a file already there holds (own call and locator are set only when
// empty); a Kestrel.txt that cannot be read whole is not touched. Returns "" on success, else
// what went wrong.
QString writeStationFiles(const QString& dir, const SimPlaces& places);
