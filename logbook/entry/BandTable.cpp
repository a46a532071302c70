#include "logbook/entry/BandTable.h"

#include <array>

namespace {
struct Band {
    const char* pattern;
    const char* caption;
};
// Up to 28400 the numbers are kHz, from 50 on the MHz digits of the band.
constexpr std::array<Band, BandTable::Count> Bands = { {
    { "1840%", "160m" },
    { "3600%", "80m" },
    { "7050%", "40m" },
    { "10140", "30m" }, // deliberate: no "%", so only the exact text matches
    { "14200%", "20m" },
    { "18110%", "17m" },
    { "21150%", "15m" },
    { "24950%", "12m" },
    { "28400%", "10m" },
    { "50%", "6m" },
    { "144%", "2m" },
    { "432%", "70cm" },
    { "1296%", "23cm" },
    { "2320%", "13cm" },
    { "34%", "9cm" },
    { "5760%", "6cm" },
    { "10368%", "3cm" },
    { "24048%", "1.2cm" },
    { "47088%", "6mm" },
    { "76032%", "4mm" },
    { "122250%", "2.5mm" },
    { "", "all" },
} };
} // namespace

namespace BandTable {

QString pattern(int index)
{
    if (index < 0 || index >= Count)
        return QString();
    return QString::fromLatin1(Bands[std::size_t(index)].pattern);
}

QString bandText(const QString& pattern)
{
    return pattern.isEmpty() ? QString() : pattern.left(pattern.size() - 1);
}

QString caption(int index)
{
    if (index < 0 || index >= Count)
        return QString();
    return QString::fromLatin1(Bands[std::size_t(index)].caption);
}

int indexOf(const QString& p)
{
    for (int i = 0; i < Count; ++i) {
        if (p == QLatin1String(Bands[std::size_t(i)].pattern))
            return i;
    }
    return -1;
}

} // namespace BandTable
