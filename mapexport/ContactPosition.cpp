#include "mapexport/ContactPosition.h"

#include "geo/Bearing.h"

std::optional<GeoPoint> HomePoint(const QString& ownLocatorSetting)
{
    const std::optional<QString> own = Locator::own(ownLocatorSetting);
    if (!own)
        return std::nullopt;
    return LocatorToDegrees(*own);
}

std::optional<GeoPoint> LocateContact(
    const QString& locator, const std::optional<GeoPoint>& home, MapPosition& p)
{
    const QString contact = Locator::completed(locator.toUpper());
    if (!Locator::isValid(contact))
        return std::nullopt;
    const GeoPoint there = LocatorToDegrees(contact);
    const BearingResult r = home ? ComputeBearing(*home, there) : BearingResult();
    p = { CoordText(there), static_cast<float>(r.km), r.qtf };
    return there;
}
