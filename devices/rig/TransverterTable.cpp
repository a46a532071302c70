#include "devices/rig/TransverterTable.h"

#include "core/ExtensionSettings.h"

#include <QSettings>

#include <algorithm>
#include <cmath>

namespace {
std::optional<qint64> megahertz(const QString& text)
{
    bool ok = false;
    const double mhz = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(mhz) || mhz <= 0 || mhz > 1e6)
        return std::nullopt;
    return std::llround(mhz * 100000.0);
}
} // namespace

std::optional<Transverter> TransverterTable::parse(const QString& key, const QString& value, QString* problem)
{
    const QStringList parts = value.split(QLatin1Char(','));
    const auto rf = megahertz(key);
    const auto ifStart = megahertz(parts.value(0));
    const auto width = parts.size() > 1 ? megahertz(parts[1]) : std::optional<qint64>(DefaultWidth);
    if (!rf || !ifStart || !width || parts.size() > 2) {
        if (problem)
            *problem = QStringLiteral("Kestrel.ini [transverters] %1=%2: write <RF start MHz>=<IF start MHz>"
                                      "[,<width MHz>], e.g. 1296=144")
                           .arg(key, value);
        return std::nullopt;
    }
    if (*ifStart + *width - 1 > RigLimit) {
        if (problem)
            *problem = QStringLiteral("Kestrel.ini [transverters] %1=%2: the IF is beyond the rig")
                           .arg(key, value);
        return std::nullopt;
    }
    return Transverter { *rf, *ifStart, *width };
}

TransverterTable TransverterTable::fromSettings(QStringList* problems)
{
    QSettings ini(ExtensionSettings::path(), QSettings::IniFormat);
    ini.beginGroup(ExtensionKey::TransverterGroup);
    QList<Transverter> bands;
    for (const QString& key : ini.childKeys()) {
        // QSettings reads "144,4" as a list; put it back together.
        const QString value = ini.value(key).toStringList().join(QLatin1Char(','));
        QString problem;
        if (const auto t = parse(key, value, &problem))
            bands << *t;
        else if (problems)
            *problems << problem;
    }
    std::sort(bands.begin(), bands.end(),
        [](const Transverter& a, const Transverter& b) { return a.rfStart < b.rfStart; });
    return TransverterTable(std::move(bands));
}

std::optional<qint64> TransverterTable::rigFrequency(qint64 counter) const
{
    for (const Transverter& t : bands_)
        if (counter >= t.rfStart && counter < t.rfStart + t.width)
            return counter - t.rfStart + t.ifStart;
    if (counter >= 0 && counter <= RigLimit)
        return counter;
    return std::nullopt;
}
