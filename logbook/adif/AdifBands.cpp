#include "logbook/adif/AdifBands.h"

#include "core/AdifBandPlan.h"
#include "logbook/entry/BandTable.h"

#include <array>
#include <cmath>

namespace {

struct TableBand {
    const char* adif;
    const char* freq;
};
// The band buttons 0..20 in ADIF terms.
constexpr std::array<TableBand, 21> Table = { {
    { "160m", "1.840" },
    { "80m", "3.600" },
    { "40m", "7.050" },
    { "30m", "10.140" },
    { "20m", "14.200" },
    { "17m", "18.110" },
    { "15m", "21.150" },
    { "12m", "24.950" },
    { "10m", "28.400" },
    { "6m", "50" },
    { "2m", "144" },
    { "70cm", "432" },
    { "23cm", "1296" },
    { "13cm", "2320" },
    { "9cm", "3400" },
    { "6cm", "5760" },
    { "3cm", "10368" },
    { "1.25cm", "24048" },
    { "6mm", "47088" },
    { "4mm", "76032" },
    { "2.5mm", "122250" },
} };

// The texts of the band buttons 0..20: what each filter finds (the pattern without its "%",
// "10140" whole) and what a new contact gets ("1014"), made once.
struct Texts {
    QString filter[21];
    QString entry[21];
    Texts()
    {
        for (int i = 0; i < 21; ++i) {
            filter[i] = BandTable::pattern(i);
            if (filter[i].endsWith(QLatin1Char('%')))
                filter[i].chop(1);
            entry[i] = BandTable::bandText(BandTable::pattern(i));
        }
    }
};
const Texts& texts()
{
    static const Texts t;
    return t;
}

QString filterText(int index)
{
    return texts().filter[index];
}

QString number(double v)
{
    QString s = QString::number(v, 'f', 6);
    while (s.endsWith(QLatin1Char('0')))
        s.chop(1);
    if (s.endsWith(QLatin1Char('.')))
        s.chop(1);
    return s;
}

// The log's text of a frequency: kHz below 30 MHz, whole MHz above.
QString textOfFrequency(double mhz)
{
    return mhz < 30.0 ? QString::number(std::llround(mhz * 1000.0))
                      : QString::number(std::llround(std::floor(mhz)));
}

} // namespace

namespace AdifBands {

bool isAdifBand(const QString& name)
{
    return AdifBandPlan::find(name).has_value();
}

QString bandOfFrequency(double mhz)
{
    return AdifBandPlan::bandOfMHz(mhz);
}

AdifBand fromBandText(const QString& bandText)
{
    const QString t = bandText.trimmed();
    for (int i = 0; i < int(Table.size()); ++i) {
        if (t == texts().filter[i] || t == texts().entry[i])
            return { QString::fromLatin1(Table[std::size_t(i)].adif),
                QString::fromLatin1(Table[std::size_t(i)].freq) };
    }
    bool ok = false;
    const double v = t.toDouble(&ok);
    if (!ok || v <= 0.0)
        return {};
    // A short-wave band in kHz first ("14074"), else MHz ("145", "1296").
    const QString hf = bandOfFrequency(v / 1000.0);
    if (!hf.isEmpty() && v / 1000.0 < 30.0)
        return { hf, number(v / 1000.0) };
    const QString band = bandOfFrequency(v);
    if (!band.isEmpty())
        return { band, number(v) };
    return {};
}

QString bandTextFor(const QString& adifBand, const QString& freq)
{
    bool ok = false;
    const double mhz = freq.trimmed().toDouble(&ok);
    const bool haveFreq = ok && mhz > 0.0;
    QString band = adifBand.trimmed();
    if ((band.isEmpty() || !isAdifBand(band)) && haveFreq)
        band = bandOfFrequency(mhz);
    for (int i = 0; i < int(Table.size()); ++i) {
        if (band.compare(QLatin1String(Table[std::size_t(i)].adif), Qt::CaseInsensitive) == 0)
            return filterText(i);
    }
    if (haveFreq)
        return textOfFrequency(mhz);
    if (const std::optional<AdifBandPlan::Band> b = AdifBandPlan::find(band))
        return textOfFrequency(static_cast<double>(b->lowHz) / 1e6);
    return QString();
}

} // namespace AdifBands
