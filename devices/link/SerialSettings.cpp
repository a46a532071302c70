#include "devices/link/SerialSettings.h"

#include <QStringList>

namespace {

std::optional<SerialSettings> refuse(const QString& text, const QString& reason, QString* problem)
{
    if (problem)
        *problem = QStringLiteral("line settings \"%1\" refused: %2").arg(text, reason);
    return std::nullopt;
}

} // namespace

std::optional<SerialSettings> SerialSettings::parse(const QString& text, QString* problem)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 4)
        return refuse(text,
            QStringLiteral("expected four parts, baud,parity,data bits,stop bits, such as \"9600,n,8,1\""),
            problem);

    SerialSettings s;
    bool ok = false;
    const QString baud = parts[0].trimmed();
    s.baudRate = baud.toInt(&ok);
    if (!ok || s.baudRate <= 0 || s.baudRate > 4000000)
        return refuse(text,
            QStringLiteral("baud rate \"%1\" is not a whole number from 1 to 4000000").arg(baud), problem);

    const QString parity = parts[1].trimmed().toLower();
    if (parity == QLatin1String("n"))
        s.parity = Parity::None;
    else if (parity == QLatin1String("e"))
        s.parity = Parity::Even;
    else if (parity == QLatin1String("o"))
        s.parity = Parity::Odd;
    else if (parity == QLatin1String("m"))
        s.parity = Parity::Mark;
    else if (parity == QLatin1String("s"))
        s.parity = Parity::Space;
    else
        return refuse(
            text, QStringLiteral("parity \"%1\" must be n, e, o, m or s").arg(parts[1].trimmed()), problem);

    const QString bits = parts[2].trimmed();
    s.dataBits = bits.toInt(&ok);
    if (!ok || s.dataBits < 5 || s.dataBits > 8)
        return refuse(text, QStringLiteral("data bits \"%1\" must be 5, 6, 7 or 8").arg(bits), problem);

    const QString stop = parts[3].trimmed();
    if (stop == QLatin1String("1"))
        s.stopBits = StopBits::One;
    else if (stop == QLatin1String("1.5"))
        s.stopBits = StopBits::OneAndHalf;
    else if (stop == QLatin1String("2"))
        s.stopBits = StopBits::Two;
    else
        return refuse(text, QStringLiteral("stop bits \"%1\" must be 1, 1.5 or 2").arg(stop), problem);

    if (problem)
        problem->clear();
    return s;
}

QString SerialSettings::toText() const
{
    static const char letters[] = { 'n', 'e', 'o', 'm', 's' };
    const char* stop = stopBits == StopBits::One ? "1" : stopBits == StopBits::OneAndHalf ? "1.5" : "2";
    return QStringLiteral("%1,%2,%3,%4")
        .arg(baudRate)
        .arg(QLatin1Char(letters[static_cast<int>(parity)]))
        .arg(dataBits)
        .arg(QLatin1String(stop));
}
