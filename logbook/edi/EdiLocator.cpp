#include "logbook/edi/EdiLocator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {
constexpr double EarthRadiusKm = 6371.291;

bool inRange(QChar c, char low, char high)
{
    const char u = char(c.toUpper().unicode() < 128 ? c.toUpper().unicode() : 0);
    return u >= low && u <= high;
}

struct LonLat {
    double lon;
    double lat;
};

// Centre of the smallest square the locator gives, in degrees.
LonLat centre(const QString& loc)
{
    double lon = -180.0;
    double lat = -90.0;
    double width = 20.0; // field
    double height = 10.0;
    for (int pair = 0; pair * 2 < loc.size(); ++pair) {
        const QChar x = loc.at(pair * 2).toUpper();
        const QChar y = loc.at(pair * 2 + 1).toUpper();
        const bool letters = pair % 2 == 0;
        const int xi = letters ? x.unicode() - 'A' : x.unicode() - '0';
        const int yi = letters ? y.unicode() - 'A' : y.unicode() - '0';
        lon += xi * width;
        lat += yi * height;
        if (pair * 2 + 2 < loc.size()) {
            const int next = (pair + 1) % 2 == 0 ? 24 : 10;
            width /= next;
            height /= next;
        }
    }
    return { lon + width / 2.0, lat + height / 2.0 };
}
} // namespace

namespace EdiLocator {

bool isValid(const QString& loc)
{
    if (loc.size() != 4 && loc.size() != 6 && loc.size() != 8 && loc.size() != 10)
        return false;
    for (int i = 0; i < loc.size(); ++i) {
        const int pair = i / 2;
        bool ok = false;
        if (pair == 0)
            ok = inRange(loc.at(i), 'A', 'R');
        else if (pair % 2 == 1)
            ok = inRange(loc.at(i), '0', '9');
        else
            ok = inRange(loc.at(i), 'A', 'X');
        if (!ok)
            return false;
    }
    return true;
}

double distanceKm(const QString& from, const QString& to)
{
    constexpr double rad = std::numbers::pi / 180.0;
    const LonLat a = centre(from);
    const LonLat b = centre(to);
    const double c = std::sin(a.lat * rad) * std::sin(b.lat * rad)
        + std::cos(a.lat * rad) * std::cos(b.lat * rad) * std::cos((b.lon - a.lon) * rad);
    return EarthRadiusKm * std::acos(std::clamp(c, -1.0, 1.0));
}

int points(double km)
{
    return std::max(1, int(std::floor(km)));
}

} // namespace EdiLocator
