#pragma once
// Amateur bands from 160 m to 2.5 mm by frequency, for sorting incoming spots.
#include <QString>
#include <QStringList>

namespace BandPlan {
// "20m", "2m", "70cm", "3cm", ...; "" outside every band.
QString bandOf(double kHz);
// All band names from the lowest to the highest band.
QStringList bandNames();
} // namespace BandPlan
