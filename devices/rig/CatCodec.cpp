#include "devices/rig/CatCodec.h"

namespace Cat {

quint8 bcdByte(int value)
{
    if (value >= 10 && value <= 99)
        value += 6 * (value / 10);
    return static_cast<quint8>(value & 0xFF);
}

QByteArray frequencyCommand(const QString& frequencyText, int digitCount)
{
    QString digits;
    for (const QChar c : frequencyText.trimmed()) {
        if (!c.isDigit() || c.unicode() > '9')
            break;
        digits += c;
    }
    digits = digits.rightJustified(qMax(digitCount, 8), QLatin1Char('0'));
    const qsizetype n = digits.size();
    const int g1 = digits.mid(n - 2, 2).toInt();
    const int g2 = digits.mid(n - 4, 2).toInt();
    const int g3 = digits.mid(n - 6, 2).toInt();
    const int g4 = digits.left(n - 6).right(9).toInt(); // the leading group, whatever remains

    QByteArray bytes;
    bytes.append(static_cast<char>(bcdByte(g4)));
    bytes.append(static_cast<char>(bcdByte(g3)));
    bytes.append(static_cast<char>(bcdByte(g2)));
    bytes.append(static_cast<char>(bcdByte(g1)));
    bytes.append('\x01');
    return bytes;
}

QByteArray frequencyTextCommand(const QString& frequencyText)
{
    const QString padding = frequencyText.size() == 6 ? QStringLiteral("00") : QString();
    return plainText(QStringLiteral("FA") + frequencyText + padding + QStringLiteral("0;"));
}

int digitCount(int bandIndex)
{
    return bandIndex == 1 ? 7 : 8;
}

QByteArray plainText(const QString& text)
{
    return text.toLatin1();
}

} // namespace Cat

namespace Cat {

QString megahertzText(qint64 counter)
{
    return QString::number(static_cast<double>(counter) / 100000.0, 'g', 15);
}

int tuningStep(int option)
{
    switch (option) {
    case 1:
        return 1;
    case 2:
        return 10;
    case 3:
        return 100;
    case 4:
        return 1000;
    default:
        return 0;
    }
}

qint64 bandPreset(int bandIndex)
{
    switch (bandIndex) {
    case 1:
        return 5020000;
    case 2:
        return 14420000;
    case 3:
        return 43220000;
    default:
        return 0;
    }
}

} // namespace Cat
