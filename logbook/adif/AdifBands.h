#pragma once
// Band texts of the log and ADIF's BAND and FREQ. The log's band text is a number of kHz up to
// 28400 and of MHz from 50 on (and "1014" or "10140" for 30 m); ADIF names bands ("20m", "2m")
// and gives frequencies in MHz.
#include <QString>

struct AdifBand {
    QString band; // ADIF band name, "" when unknown
    QString freq; // MHz, "" when unknown
};

namespace AdifBands {
// BAND and FREQ for a band text: the band table's texts exactly, other texts by their number
// (kHz when that falls in a short-wave band, else MHz).
AdifBand fromBandText(const QString& bandText);
// The ADIF band a frequency in MHz lies in; "" outside every band.
QString bandOfFrequency(double mhz);
// The log's band text for an ADIF band and frequency: the text the band button's filter finds
// ("14200", "144", "10140") for the table's bands, else the frequency in kHz below 30 MHz and in
// whole MHz above (or the band's lower edge when no frequency is given). "" when neither says
// anything usable.
QString bandTextFor(const QString& adifBand, const QString& freq);
// True for a band name of ADIF's band list (without case).
bool isAdifBand(const QString& name);
} // namespace AdifBands
