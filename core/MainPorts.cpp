#include "core/MainPorts.h"

#include "core/SettingsTable.h"

namespace MainPorts {

Setup resolve(int n, bool inUse, const QString& number, const QString& settings, const QString& sensorPort)
{
    if (n == 3) {
        // the sensor box is queried on every tick whatever the GPS row says
        const QString port = sensorPort.trimmed().isEmpty() ? number.trimmed() : sensorPort.trimmed();
        return { port, SensorSettings, true };
    }
    return { number.trimmed(), settings.trimmed(), inUse };
}

Setup fromTable(const SettingsTable& table, int n, const QString& sensorPort)
{
    const int used = Setting::Com1Used + 3 * (n - 1);
    return resolve(n, table.intAt(used) == 1, table.textAt(used + 1), table.textAt(used + 2), sensorPort);
}

QString lampText(int n, const QString& portText)
{
    return QStringLiteral("Com%1 PortNr: ").arg(n) + portText + QStringLiteral(" ");
}

QString role(int n)
{
    switch (n) {
    case 1:
        return QStringLiteral("rig 1");
    case 2:
        return QStringLiteral("rig 2");
    case 3:
        return QStringLiteral("sensor box");
    case 4:
        return QStringLiteral("rotator");
    default:
        return QString();
    }
}

} // namespace MainPorts
