#include "mapexport/RichtungQrb.h"

#include "core/Station.h"
#include "mapexport/ContactPosition.h"
#include "mapexport/KmlTemplates.h"
#include "mapexport/LogMapFields.h"

#include <cmath>

SquareBounds SquareAround(double lon, double lat)
{
    float x = static_cast<float>(lon);
    if (static_cast<long long>(std::floor(x)) % 2 != 0)
        x -= 1.0f;
    SquareBounds b;
    b.west = static_cast<int>(std::floor(x));
    b.east = b.west + 2;
    b.south = static_cast<int>(std::floor(lat));
    b.north = b.south + 1;
    return b;
}

QString SquareOutline(double lon, double lat)
{
    const SquareBounds b = SquareAround(lon, lat);
    return Kml::squareRing(b.west, b.south, b.east, b.north);
}

bool RichtungQRB(Station& station, LogMapFields& fields, const QString& locatorBox)
{
    const std::optional<GeoPoint> home = HomePoint(station.settings.textAt(Setting::MyLocator));
    station.homeCoords = home ? CoordText(*home) : QString();

    MapPosition p;
    const std::optional<GeoPoint> there
        = LocateContact(fields.passOver ? fields.passOverSquare : locatorBox, home, p);
    if (!there)
        return false;
    station.coordText = std::move(p.coordText);
    fields.passOver = false;
    fields.outline = SquareOutline(there->lon, there->lat);
    fields.distanceKm = p.distanceKm;
    fields.bearing = p.bearing;
    return true;
}
