#include "gps/GpsPosition.h"

#include <algorithm>
#include <cmath>

double SignedDegrees(double value, QStringView hemisphere)
{
    return hemisphere == u"S" || hemisphere == u"W" ? -value : value;
}

std::optional<GpsPosition> PositionFrom(
    double lat, QStringView latHemisphere, double lon, QStringView lonHemisphere)
{
    if ((latHemisphere != u"N" && latHemisphere != u"S") || (lonHemisphere != u"E" && lonHemisphere != u"W"))
        return std::nullopt;
    const GpsPosition p { SignedDegrees(lat, latHemisphere), SignedDegrees(lon, lonHemisphere) };
    if (!(std::fabs(p.lat) <= 90.0) || !(std::fabs(p.lon) <= 180.0))
        return std::nullopt; // also NaN
    return p;
}

QString PositionToLocator(const GpsPosition& p, int length)
{
    if (!(std::fabs(p.lat) <= 90.0) || !(std::fabs(p.lon) <= 180.0))
        return QString();
    length = std::clamp(length / 2 * 2, 4, 10);
    // Count in cells of the smallest square (1/2880 degree of longitude, 1/5760 of latitude), so
    // that a point on a square's edge is not pushed into its neighbour by rounding.
    auto cells = [](double fromEdge, double perDegree, double degrees) {
        const double c = std::floor(fromEdge * perDegree);
        return static_cast<int>(std::clamp(c, 0.0, degrees * perDegree - 1));
    };
    const int x = cells(p.lon + 180.0, 2880.0, 360.0);
    const int y = cells(p.lat + 90.0, 5760.0, 180.0);
    // Both run through pairs of the same cell counts: 57600, 5760, 240, 24, 1.
    static constexpr int size[] = { 57600, 5760, 240, 24, 1 };
    static constexpr int count[] = { 18, 10, 24, 10, 24 };
    static constexpr char base[] = { 'A', '0', 'A', '0', 'A' };
    QString out;
    for (int pair = 0; pair < length / 2; ++pair) {
        out += QChar(base[pair] + x / size[pair] % count[pair]);
        out += QChar(base[pair] + y / size[pair] % count[pair]);
    }
    return out;
}

QString PositionText(const GpsPosition& p)
{
    return QStringLiteral("%1° %2  %3° %4")
        .arg(std::fabs(p.lat), 0, 'f', 6)
        .arg(QChar(p.lat < 0 ? u'S' : u'N'))
        .arg(std::fabs(p.lon), 0, 'f', 6)
        .arg(QChar(p.lon < 0 ? u'W' : u'E'));
}
