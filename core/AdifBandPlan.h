#pragma once
// The one band table of the station: ADIF 3.1's band enumeration with its exact edges. The
// cluster sorts spots by it, the spot filter offers its names, the logbook and ADIF name a
// contact's band by it. Edges are whole hertz, so a frequency on an edge lies in the band.
#include <QString>
#include <QStringList>

#include <optional>
#include <span>

namespace AdifBandPlan {

struct Band {
    const char* name; // "2190m", ..., "20m", ..., "1.25cm", ..., "submm"
    qint64 lowHz;
    qint64 highHz;
};

// Every band from the lowest to the highest.
std::span<const Band> bands();
// The band a frequency lies in; "" outside every band.
QString bandOfHz(qint64 hz);
QString bandOfKHz(double kHz);
QString bandOfMHz(double mhz);
// The band of that name, without case; nothing for another name.
std::optional<Band> find(const QString& name);
QStringList names();

} // namespace AdifBandPlan
