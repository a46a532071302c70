#include "mapexport/RichtungQrb.h"

#include "core/Station.h"
#include "geo/Bearing.h"
#include "geo/Locator.h"
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
    const std::optional<QString> own = Locator::own(station.settings.textAt(Setting::MyLocator));
    std::optional<GeoPoint> home;
    if (own)
        home = LocatorToDegrees(*own);
    station.homeCoords = home ? CoordText(*home) : QString();

    const QString contact
        = Locator::completed((fields.passOver ? fields.passOverSquare : locatorBox).toUpper());
    if (!Locator::isValid(contact))
        return false;
    const GeoPoint there = LocatorToDegrees(contact);
    station.coordText = CoordText(there);
    fields.passOver = false;

    fields.outline = SquareOutline(there.lon, there.lat);
    // without a home there is no distance or bearing: 0 is stored, never a made-up one
    const BearingResult r = home ? ComputeBearing(*home, there) : BearingResult();
    fields.distanceKm = static_cast<float>(r.km);
    fields.bearing = r.qtf;
    return true;
}

LocatorProcedure ScratchLocator(Station& station)
{
    return [&station](const QString& grid, MapPosition& p) {
        LogMapFields scratch;
        const QString coordBefore = station.coordText;
        const bool ok = RichtungQRB(station, scratch, grid);
        if (ok)
            p = { station.coordText, scratch.distanceKm, scratch.bearing };
        station.coordText = coordBefore;
        return ok;
    };
}
