#include "cluster/BandPlan.h"

#include <array>

namespace {

struct Band {
    double lowKHz;
    double highKHz;
    const char* name;
};

// Edges are generous (widest region's allocation) so that spots near a band edge still sort.
constexpr std::array<Band, 26> bands { {
    { 1800, 2000, "160m" },
    { 3500, 4000, "80m" },
    { 5250, 5450, "60m" },
    { 7000, 7300, "40m" },
    { 10100, 10150, "30m" },
    { 14000, 14350, "20m" },
    { 18068, 18168, "17m" },
    { 21000, 21450, "15m" },
    { 24890, 24990, "12m" },
    { 28000, 29700, "10m" },
    { 50000, 54000, "6m" },
    { 70000, 71000, "4m" },
    { 144000, 148000, "2m" },
    { 220000, 225000, "1.25m" },
    { 420000, 450000, "70cm" },
    { 902000, 928000, "33cm" },
    { 1240000, 1300000, "23cm" },
    { 2300000, 2450000, "13cm" },
    { 3300000, 3500000, "9cm" },
    { 5650000, 5925000, "6cm" },
    { 10000000, 10500000, "3cm" },
    { 24000000, 24250000, "1.2cm" },
    { 47000000, 47200000, "6mm" },
    { 75500000, 81500000, "4mm" },
    { 122250000, 123000000, "2.5mm" },
    { 134000000, 141000000, "2mm" },
} };

} // namespace

namespace BandPlan {

QString bandOf(double kHz)
{
    for (const Band& b : bands) {
        if (kHz >= b.lowKHz && kHz <= b.highKHz)
            return QString::fromLatin1(b.name);
    }
    return {};
}

QStringList bandNames()
{
    QStringList names;
    for (const Band& b : bands)
        names << QString::fromLatin1(b.name);
    return names;
}

} // namespace BandPlan
