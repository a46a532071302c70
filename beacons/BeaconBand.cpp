#include "beacons/BeaconBand.h"

#include <cmath>

namespace {

struct Row {
    const char16_t* value;
    int vhf;
    int microwave;
};

// Tested in this order: the shorter values first.
constexpr Row kBands[] = {
    { u"50", 1, 0 },
    { u"144", 2, 0 },
    { u"432", 3, 0 },
    { u"1296", 0, 1 },
    { u"2320", 0, 2 },
    { u"3400", 0, 3 },
    { u"5760", 0, 4 },
    { u"10368", 0, 5 },
    { u"24048", 0, 6 },
    { u"47088", 0, 7 },
    { u"76032", 0, 8 },
    { u"122250", 0, 9 },
};

} // namespace

std::optional<BeaconBand> BeaconBandFor(const QString& qrg)
{
    for (const Row& row : kBands) {
        const QString value = QString::fromUtf16(row.value);
        if (qrg.left(value.size()) == value)
            return BeaconBand { value, row.vhf, row.microwave };
    }
    return std::nullopt;
}

std::optional<qint64> BeaconCounterFor(const QString& qrg)
{
    QString text = qrg.trimmed();
    text.replace(QLatin1Char(','), QLatin1Char('.'));
    bool ok = false;
    const double kHz = text.toDouble(&ok);
    // Up to 10^12 kHz keeps every counter exact in a double.
    if (!ok || !std::isfinite(kHz) || kHz <= 0.0 || kHz > 1e12)
        return std::nullopt;
    return std::llround(kHz * 100.0);
}

std::optional<BeaconTuning> BeaconTuningFor(const QString& qrg)
{
    BeaconTuning tuning { BeaconBandFor(qrg), BeaconCounterFor(qrg) };
    if (!tuning.band && !tuning.counter)
        return std::nullopt;
    return tuning;
}
