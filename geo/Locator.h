#pragma once
// Maidenhead locators of 4, 6, 8 or 10 characters: validation and conversion to the
// south-west corner of the smallest square given.
#include <QString>

#include <optional>

class Station;

struct GeoPoint {
    double lon = 0.0; // degrees, east positive
    double lat = 0.0; // degrees, north positive
};

namespace Locator {
// The validation rule alone, without prompt or flag. Field letters upper case A-R only;
// the subsquare letters accept "A" to "x" in code order (deliberately generous).
bool isValid(const QString& locator);
// "JO31" -> "JO31HH": a 4-character target is completed, so its point lies 7/12 deg east and
// 7/24 deg north of the square's corner (deliberate: not the centre).
QString completed(const QString& locator);
// The own locator (setting 6) as every calculation uses it: upper case, 4 characters completed
// with "HH" like a target. Nothing when it is missing or not valid; nothing is then computed
// from it (no heading, distance or home point).
std::optional<QString> own(const QString& setting);
// The one message for an own locator that is missing or not valid; says where to set it.
QString ownProblem(const QString& setting);
} // namespace Locator

// Validates, sets station.locatorInvalid and, when invalid, shows "Invalid Gridlocator:".
void CheckLocator(Station& station, const QString& locator);

// South-west corner of the locator's smallest square (upper-cased first). Integer parts are
// 16-bit arithmetic as in the original program. The locator must have at least 6 characters
// (4-character locators are completed with "HH" before conversion).
GeoPoint LocatorToDegrees(const QString& locator);

// "longitude,latitude" with decimal points: up to 15 significant digits, no trailing zeros,
// never an exponent ("9.58333333333333,48.2916666666667").
QString CoordText(const GeoPoint& p);
