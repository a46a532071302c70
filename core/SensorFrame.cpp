#include "core/SensorFrame.h"

namespace SensorFrame {

QString hexText(const QByteArray& bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

std::optional<Reading> decode(const QByteArray& reply)
{
    if (reply.size() < MinimumBytes)
        return std::nullopt;
    const QString hex = hexText(reply);
    bool okE = false;
    bool okT = false;
    Reading r;
    r.elevationRaw = hex.mid(ElevationAt - 1, ElevationDigits).toInt(&okE, 16);
    r.temperature = hex.mid(TemperatureAt - 1, TemperatureDigits).toInt(&okT, 16);
    if (!okE || !okT)
        return std::nullopt;
    return r;
}

QString temperatureText(const Reading& r)
{
    return QStringLiteral("Temp = ") + QString::number(r.temperature);
}

QString elevationText(const Reading& r)
{
    return QStringLiteral("Ele = ") + QString::number(r.elevation(), 'f', 1);
}

} // namespace SensorFrame
