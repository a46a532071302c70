#pragma once
// Which port text and line settings each of the main window's four ports opens with, and
// how its lamp names it. Com1, Com2 and Com4 come from the settings table; Com3, the sensor
// box, always runs at "9600,n,8,1" on the port Kestrel.ini names, else on the Com3 number.
#include <QString>

class SettingsTable;

namespace MainPorts {

inline const QString SensorSettings = QStringLiteral("9600,n,8,1");

struct Setup {
    QString portText;
    QString settings;
    bool inUse = false;
};

// From a row's own values (as the settings dialog holds them); n from 1 to 4.
Setup resolve(int n, bool inUse, const QString& number, const QString& settings, const QString& sensorPort);
// From the settings table.
Setup fromTable(const SettingsTable& table, int n, const QString& sensorPort);

// "Com1 PortNr: " + port text + " ".
QString lampText(int n, const QString& portText);
// What the port serves, for notices: "rig 1", "rig 2", "sensor box", "rotator".
QString role(int n);

} // namespace MainPorts
