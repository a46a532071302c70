#include "cluster/SpotLines.h"

#include "core/SettingsTable.h"

#include <cmath>

namespace SpotLines {

QString propagationTag(int option)
{
    switch (option) {
    case 1:
        return QStringLiteral("<Tr>");
    case 2:
        return QStringLiteral("<Rs>");
    case 3:
        return QStringLiteral("<Es>");
    default:
        return {};
    }
}

QString fromBoxes(const QString& qrg, const QString& call, int propagation, const QString& locator)
{
    // deliberate: no blank between the callsign and the tag in this line
    return QStringLiteral("dx ") + qrg + QLatin1Char(' ') + call + propagationTag(propagation)
        + locator.left(6);
}

QString fromSpot(
    const QString& qrg, const QString& call, const QString& remark, int propagation, const QString& locator)
{
    return QStringLiteral("dx ") + qrg + QLatin1Char(' ') + call + QLatin1Char(' ') + remark
        + propagationTag(propagation) + locator.left(6);
}

QString qrgFromFrequencyText(const QString& frequencyText)
{
    QString digits;
    for (QChar c : frequencyText) {
        if (c.isDigit())
            digits += c;
    }
    if (digits.isEmpty())
        return {};
    digits = digits.rightJustified(3, QLatin1Char('0'));
    QString kHz = digits.left(digits.size() - 2);
    while (kHz.size() > 1 && kHz.front() == QLatin1Char('0'))
        kHz.remove(0, 1);
    return kHz + QLatin1Char('.') + digits.at(digits.size() - 2);
}

QString frequencyTextFromQrg(const QString& qrg)
{
    bool ok = false;
    const double kHz = qrg.trimmed().toDouble(&ok);
    if (!ok || !(kHz > 0) || kHz > 1e9)
        return {};
    return QString::number(static_cast<qint64>(std::llround(kHz * 100.0)));
}

} // namespace SpotLines

ClusterServer chooseClusterServer(const SettingsTable& settings)
{
    ClusterServer server { QStringLiteral("0"), 0 };
    const int choice = settings.intAt(Setting::ClusterChoice);
    int hostIndex = -1;
    if (choice == 1)
        hostIndex = Setting::Cluster1Host;
    else if (choice == 2)
        hostIndex = Setting::Cluster2Host;
    if (hostIndex < 0)
        return server;
    server.host = settings.textAt(hostIndex).trimmed();
    bool ok = false;
    const uint port = settings.textAt(hostIndex + 1).trimmed().toUInt(&ok);
    server.port = ok && port <= 65535 ? static_cast<quint16>(port) : 0;
    return server;
}
