#include "devices/link/PortText.h"

#include <QRegularExpression>

namespace PortText {

bool isNumber(const QString& portText)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
    return digits.match(portText.trimmed()).hasMatch();
}

QString devicePath(const QString& portText, Platform platform)
{
    const QString text = portText.trimmed();
    if (!isNumber(text))
        return text;
    bool ok = false;
    const int n = text.toInt(&ok);
    if (!ok || n < 1)
        return {};
    return platform == Platform::Windows ? QStringLiteral("COM%1").arg(n)
                                         : QStringLiteral("/dev/ttyS%1").arg(n - 1);
}

QString displayName(const QString& portText, Platform platform)
{
    const QString text = portText.trimmed();
    const QString path = devicePath(text, platform);
    if (path.isEmpty())
        return text.isEmpty() ? QStringLiteral("(no port)") : text;
    return path == text ? path : QStringLiteral("%1 (%2)").arg(text, path);
}

} // namespace PortText
