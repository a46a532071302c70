#include "core/AdifBandPlan.h"

#include <array>
#include <cmath>

namespace {

constexpr qint64 kHz = 1000;
constexpr qint64 MHz = 1000 * kHz;

// ADIF 3.1 band enumeration, lower and upper edge.
constexpr std::array<AdifBandPlan::Band, 33> Bands = { {
    { "2190m", 135700, 137800 },
    { "630m", 472 * kHz, 479 * kHz },
    { "560m", 501 * kHz, 504 * kHz },
    { "160m", 1800 * kHz, 2000 * kHz },
    { "80m", 3500 * kHz, 4000 * kHz },
    { "60m", 5060 * kHz, 5450 * kHz },
    { "40m", 7000 * kHz, 7300 * kHz },
    { "30m", 10100 * kHz, 10150 * kHz },
    { "20m", 14000 * kHz, 14350 * kHz },
    { "17m", 18068 * kHz, 18168 * kHz },
    { "15m", 21000 * kHz, 21450 * kHz },
    { "12m", 24890 * kHz, 24990 * kHz },
    { "10m", 28000 * kHz, 29700 * kHz },
    { "8m", 40 * MHz, 45 * MHz },
    { "6m", 50 * MHz, 54 * MHz },
    { "5m", 54 * MHz + 1, 69900 * kHz },
    { "4m", 70 * MHz, 71 * MHz },
    { "2m", 144 * MHz, 148 * MHz },
    { "1.25m", 222 * MHz, 225 * MHz },
    { "70cm", 420 * MHz, 450 * MHz },
    { "33cm", 902 * MHz, 928 * MHz },
    { "23cm", 1240 * MHz, 1300 * MHz },
    { "13cm", 2300 * MHz, 2450 * MHz },
    { "9cm", 3300 * MHz, 3500 * MHz },
    { "6cm", 5650 * MHz, 5925 * MHz },
    { "3cm", 10000 * MHz, 10500 * MHz },
    { "1.25cm", 24000 * MHz, 24250 * MHz },
    { "6mm", 47000 * MHz, 47200 * MHz },
    { "4mm", 75500 * MHz, 81000 * MHz },
    { "2.5mm", 119980 * MHz, 123000 * MHz },
    { "2mm", 134000 * MHz, 149000 * MHz },
    { "1mm", 241000 * MHz, 250000 * MHz },
    { "submm", 300000 * MHz, 7500000 * MHz },
} };

// Rounded to whole hertz; anything that is no frequency lies outside every band.
qint64 hertz(double value, double scale)
{
    const double hz = value * scale;
    return std::isfinite(hz) && hz > 0.0 && hz < 1e15 ? std::llround(hz) : -1;
}

} // namespace

namespace AdifBandPlan {

std::span<const Band> bands()
{
    return Bands;
}

QString bandOfHz(qint64 hz)
{
    for (const Band& b : Bands) {
        if (hz >= b.lowHz && hz <= b.highHz)
            return QString::fromLatin1(b.name);
    }
    return {};
}

QString bandOfKHz(double kHzValue)
{
    return bandOfHz(hertz(kHzValue, 1e3));
}

QString bandOfMHz(double mhz)
{
    return bandOfHz(hertz(mhz, 1e6));
}

std::optional<Band> find(const QString& name)
{
    for (const Band& b : Bands) {
        if (name.compare(QLatin1String(b.name), Qt::CaseInsensitive) == 0)
            return b;
    }
    return std::nullopt;
}

QStringList names()
{
    QStringList out;
    for (const Band& b : Bands)
        out << QString::fromLatin1(b.name);
    return out;
}

} // namespace AdifBandPlan
