#include "geo/Bearing.h"

#include "core/Station.h"

#include <GeographicLib/Geodesic.hpp>

#include <cmath>

namespace {

constexpr double kEquatorKm = 6378.14;
constexpr double kPolarKm = 6356.755;

// arccos as the original computes it: pi/2 - atan(x / sqrt(1 - x^2)) inside (-1, 1),
// 0 at or above 1, pi at or below -1.
double arccosRule(double x, double pi)
{
    if (std::isnan(x))
        return 0.0;
    if (x >= 1.0)
        return 0.0;
    if (x <= -1.0)
        return pi;
    return pi / 2.0 - std::atan(x / std::sqrt(1.0 - x * x));
}

QString fixed(double v, int decimals)
{
    return QString::number(v, 'f', decimals);
}

} // namespace

double EllipsoidDistanceKm(const GeoPoint& a, const GeoPoint& b)
{
    static const GeographicLib::Geodesic geod(kEquatorKm * 1000.0, (kEquatorKm - kPolarKm) / kEquatorKm);
    double metres = 0.0;
    geod.Inverse(a.lat, a.lon, b.lat, b.lon, metres);
    return metres / 1000.0;
}

BearingResult ComputeBearing(const GeoPoint& own, const GeoPoint& target)
{
    const double pi = 4.0 * std::atan(1.0);
    const double rad = (2.0 * std::atan(1.0)) / 90.0;
    const double phi1 = own.lat * rad;
    const double phi2 = target.lat * rad;
    const double dLambda = (target.lon - own.lon) * rad;

    const double cosSigma = std::sin(phi1) * std::sin(phi2) + std::cos(phi1) * std::cos(phi2) * std::cos(dLambda);
    const double sinSigma = std::sqrt(std::max(0.0, 1.0 - cosSigma * cosSigma));
    // The same point has no heading; the original would divide by zero here.
    const double x = sinSigma > 0.0
        ? (std::sin(phi2) * std::cos(phi1) - std::cos(phi2) * std::sin(phi1) * std::cos(dLambda)) / sinSigma
        : 1.0;
    double a = arccosRule(x, pi);

    BearingResult r;
    r.km = EllipsoidDistanceKm(own, target);
    if (r.km >= 0.5 && r.km <= 20003.5 && (pi - std::fabs(dLambda)) * dLambda < 0.0)
        a = 2.0 * pi - a;
    r.qtf = static_cast<float>(a / (pi / 180.0));
    r.reverse = (r.qtf < 180.0f || r.qtf > 360.0f) ? r.qtf + 180.0f : r.qtf - 180.0f;
    return r;
}

QString FormatBearingLine(const QString& own, const QString& target, const BearingResult& r)
{
    const QChar degree(0x00B0);
    return own + QStringLiteral(" -> ") + target + QStringLiteral(" QTF: ") + fixed(r.qtf, 1) + degree
        + QStringLiteral(" / ") + fixed(r.reverse, 1) + degree + QStringLiteral(" QRB: ") + fixed(r.km, 2)
        + QStringLiteral(" km");
}

int WholeDegrees(float qtf)
{
    return static_cast<int>(std::trunc(qtf));
}

BearingOutcome ShowBearingAndDistance(Station& station, const QString& targetBox)
{
    BearingOutcome out;
    out.targetText = Locator::completed(targetBox);
    const QString setting = station.settings.textAt(Setting::MyLocator);
    const std::optional<QString> own = Locator::own(setting);
    if (!own) {
        // no result from a made-up home: no line, no heading for the rotator
        station.prompts.information(Locator::ownProblem(setting));
        return out;
    }
    const QString target = out.targetText.toUpper();
    CheckLocator(station, target);
    if (station.locatorInvalid)
        return out;

    const GeoPoint home = LocatorToDegrees(*own);
    station.coordText = CoordText(home);
    station.homeLon = home.lon;
    station.homeLat = home.lat;
    const GeoPoint there = LocatorToDegrees(target);
    station.coordText = CoordText(there);

    out.result = ComputeBearing(home, there);
    out.line = FormatBearingLine(*own, target, out.result);
    out.wholeDegrees = WholeDegrees(out.result.qtf);
    out.ok = true;
    return out;
}
