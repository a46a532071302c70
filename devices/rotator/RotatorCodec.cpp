#include "devices/rotator/RotatorCodec.h"

#include <cmath>

namespace Rotator {

QString format000(const QString& text)
{
    bool ok = false;
    const double v = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(v) || std::fabs(v) >= 1e15)
        return text;
    const qint64 whole = std::llround(v); // halves away from zero
    const QString digits = QString::number(whole < 0 ? -whole : whole).rightJustified(3, QLatin1Char('0'));
    return whole < 0 ? QStringLiteral("-") + digits : digits;
}

QByteArray setHeadingCommand(const QString& text)
{
    return "AP1" + format000(text).toLatin1() + "\r;";
}

QByteArray secondSetValueCommand(const QString& text)
{
    return "AW1" + format000(text).toLatin1() + ";";
}

QString readBack(const QByteArray& received)
{
    return QString::fromLatin1(received.left(3));
}

Pulse autoElevation(double m)
{
    // as shown with one decimal ("##0.0"), so 0.38 counts as 0.4
    const double shown = std::copysign(std::floor(std::fabs(m) * 10.0 + 0.5 + 1e-9) / 10.0, m);
    if (shown < 0.4)
        return Pulse::Up;
    if (shown > 1.0)
        return Pulse::Down;
    return Pulse::None;
}

QString autoCaption(bool on)
{
    return on ? QStringLiteral("Ele Auto") : QStringLiteral("Ele manu");
}

int autoColour(bool on)
{
    return on ? 65280 : 65535;
}

} // namespace Rotator
