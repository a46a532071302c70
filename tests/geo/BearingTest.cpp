#include "core/Station.h"
#include "geo/Bearing.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Vincenty's inverse formula on the station's ellipsoid, written from the published method:
// an independent check of the library's geodesic.
double vincentyKm(GeoPoint p1, GeoPoint p2)
{
    const double a = 6378.14, b = 6356.755, f = (a - b) / a;
    const double rad = M_PI / 180.0;
    const double L = (p2.lon - p1.lon) * rad;
    const double U1 = std::atan((1 - f) * std::tan(p1.lat * rad));
    const double U2 = std::atan((1 - f) * std::tan(p2.lat * rad));
    const double sinU1 = std::sin(U1), cosU1 = std::cos(U1), sinU2 = std::sin(U2), cosU2 = std::cos(U2);
    double lambda = L, prev = 0, sinSigma = 0, cosSigma = 0, sigma = 0, cos2Alpha = 0, cos2SigmaM = 0;
    for (int i = 0; i < 1000; ++i) {
        const double sinL = std::sin(lambda), cosL = std::cos(lambda);
        sinSigma = std::hypot(cosU2 * sinL, cosU1 * sinU2 - sinU1 * cosU2 * cosL);
        if (sinSigma == 0)
            return 0;
        cosSigma = sinU1 * sinU2 + cosU1 * cosU2 * cosL;
        sigma = std::atan2(sinSigma, cosSigma);
        const double sinAlpha = cosU1 * cosU2 * sinL / sinSigma;
        cos2Alpha = 1 - sinAlpha * sinAlpha;
        cos2SigmaM = cos2Alpha != 0 ? cosSigma - 2 * sinU1 * sinU2 / cos2Alpha : 0;
        const double C = f / 16 * cos2Alpha * (4 + f * (4 - 3 * cos2Alpha));
        prev = lambda;
        lambda = L + (1 - C) * f * sinAlpha
            * (sigma + C * sinSigma * (cos2SigmaM + C * cosSigma * (-1 + 2 * cos2SigmaM * cos2SigmaM)));
        if (std::fabs(lambda - prev) < 1e-13)
            break;
    }
    const double u2 = cos2Alpha * (a * a - b * b) / (b * b);
    const double A = 1 + u2 / 16384 * (4096 + u2 * (-768 + u2 * (320 - 175 * u2)));
    const double B = u2 / 1024 * (256 + u2 * (-128 + u2 * (74 - 47 * u2)));
    const double dSigma = B * sinSigma
        * (cos2SigmaM
           + B / 4
               * (cosSigma * (-1 + 2 * cos2SigmaM * cos2SigmaM)
                  - B / 6 * cos2SigmaM * (-3 + 4 * sinSigma * sinSigma) * (-3 + 4 * cos2SigmaM * cos2SigmaM)));
    return b * A * (sigma - dSigma);
}

// Half a meridian by integrating the meridian radius of curvature: the antipodal distance
// between two points on the equator.
double halfMeridianKm()
{
    const double a = 6378.14, b = 6356.755, e2 = (a * a - b * b) / (a * a);
    const int n = 200000;
    double sum = 0;
    for (int i = 0; i < n; ++i) {
        const double phi = -M_PI / 2 + (i + 0.5) * M_PI / n;
        const double s = std::sin(phi);
        sum += a * (1 - e2) / std::pow(1 - e2 * s * s, 1.5);
    }
    return sum * M_PI / n;
}

} // namespace

TEST(Bearing, DistancesAgreeWithAnIndependentGeodesic)
{
    const struct {
        GeoPoint a, b;
    } pairs[] = {
        {{9.58333, 48.29166}, {9.59, 48.295}},      // under 1 km
        {{6.5, 51.25}, {13.4, 52.5}},               // JO31 to Berlin
        {{179.5, 10.0}, {-179.5, 12.0}},            // across the date line
        {{10.0, 89.5}, {-170.0, 89.0}},             // over the north pole
        {{0.0, -89.9}, {90.0, -89.8}},              // near the south pole
        {{-74.0, 40.7}, {139.7, 35.7}},             // New York to Tokyo
        {{0.0, 0.0}, {0.0, 0.0}},                   // the same point
    };
    for (const auto& p : pairs)
        EXPECT_NEAR(EllipsoidDistanceKm(p.a, p.b), vincentyKm(p.a, p.b), 0.01)
            << p.a.lon << "," << p.a.lat << " -> " << p.b.lon << "," << p.b.lat;
    EXPECT_NEAR(EllipsoidDistanceKm({0, 0}, {180, 0}), halfMeridianKm(), 0.01);
}

TEST(Bearing, HeadingFollowsTheArccosRuleAndTheWestMirror)
{
    const BearingResult north = ComputeBearing({6, 51}, {6, 52});
    EXPECT_EQ(QString::number(north.qtf, 'f', 1), "0.0");
    EXPECT_EQ(QString::number(north.reverse, 'f', 1), "180.0");

    const BearingResult south = ComputeBearing({6, 51}, {6, 50});
    EXPECT_FLOAT_EQ(south.qtf, 180.0f);
    EXPECT_FLOAT_EQ(south.reverse, 0.0f);

    const BearingResult east = ComputeBearing({0, 0}, {10, 0});
    EXPECT_NEAR(east.qtf, 90.0f, 1e-4);
    const BearingResult west = ComputeBearing({0, 0}, {-10, 0});
    EXPECT_NEAR(west.qtf, 270.0f, 1e-4);
    EXPECT_NEAR(west.reverse, 90.0f, 1e-4);

    // Across the date line the shorter way from 179.5 E to 179.5 W is east.
    EXPECT_LT(ComputeBearing({179.5, 0}, {-179.5, 0}).qtf, 180.0f);
    EXPECT_GT(ComputeBearing({-179.5, 0}, {179.5, 0}).qtf, 180.0f);

    // Below 0.5 km the mirror is not applied.
    const BearingResult near = ComputeBearing({0, 0}, {-0.001, 0});
    EXPECT_LT(near.km, 0.5);
    EXPECT_NEAR(near.qtf, 90.0f, 1e-3);

    // The same point has no heading and no distance; nothing divides by zero.
    const BearingResult same = ComputeBearing({6, 51}, {6, 51});
    EXPECT_EQ(same.qtf, 0.0f);
    EXPECT_EQ(same.km, 0.0);
}

TEST(Bearing, ResultLineAndWholeDegrees)
{
    BearingResult r;
    r.qtf = 87.46f;
    r.reverse = 267.46f;
    r.km = 512.345;
    EXPECT_EQ(FormatBearingLine("JO31HH", "JO62QM", r),
              QString::fromUtf8("JO31HH -> JO62QM QTF: 87.5\u00B0 / 267.5\u00B0 QRB: 512.35 km"));
    r = {0.04f, 180.04f, 0.0};
    EXPECT_EQ(FormatBearingLine("A", "B", r), QString::fromUtf8("A -> B QTF: 0.0\u00B0 / 180.0\u00B0 QRB: 0.00 km"));
    EXPECT_EQ(WholeDegrees(359.6f), 359);
}

TEST(Bearing, ShowBearingAndDistanceCompletesChecksAndKeepsTheCoordinates)
{
    RecordingPrompts prompts;
    Station station(prompts);
    station.settings.setText(6, "jo31hh");

    BearingOutcome o = ShowBearingAndDistance(station, "JO32");
    ASSERT_TRUE(o.ok);
    EXPECT_EQ(o.targetText, "JO32HH");
    const double km = vincentyKm({6 + 7.0 / 12, 51 + 7.0 / 24}, {6 + 7.0 / 12, 52 + 7.0 / 24});
    EXPECT_EQ(o.line, QString::fromUtf8("JO31HH -> JO32HH QTF: 0.0\u00B0 / 180.0\u00B0 QRB: ")
                  + QString::number(km, 'f', 2) + " km");
    EXPECT_EQ(o.wholeDegrees, 0);
    EXPECT_EQ(station.coordText, "6.58333333333333,52.2916666666667");
    EXPECT_DOUBLE_EQ(station.homeLat, 51 + 7.0 / 24);
    EXPECT_TRUE(prompts.shown.isEmpty());

    station.coordText = "kept";
    o = ShowBearingAndDistance(station, "jo32"); // upper-cased before the check
    EXPECT_TRUE(o.ok);
    EXPECT_EQ(o.targetText, "jo32HH");
    station.coordText = "kept";
    o = ShowBearingAndDistance(station, "JO3");
    EXPECT_FALSE(o.ok);
    EXPECT_TRUE(station.locatorInvalid);
    EXPECT_EQ(prompts.shown, QStringList{"Invalid Gridlocator:"});
    EXPECT_EQ(station.coordText, "kept");
}

TEST(Bearing, ABadOwnLocatorGivesItsMessageAndNoResult)
{
    const QString where = "Set it in Initial (menu), box MyGrid: 4, 6, 8 or 10 characters such as JO31 or "
                          "JO31MM; 4 characters stand for the HH subsquare.";
    const std::pair<const char*, QString> cases[] = {
        { "", "Your own locator is not set, so no heading or distance can be worked out. " + where },
        { "JO31H",
            "Your own locator \"JO31H\" is not valid, so no heading or distance can be worked out. "
                + where },
        { "JO31HH ",
            "Your own locator \"JO31HH \" is not valid, so no heading or distance can be worked out. "
                + where },
    };
    for (const auto& [own, message] : cases) {
        RecordingPrompts prompts;
        Station station(prompts);
        station.settings.setText(Setting::MyLocator, QString::fromLatin1(own));
        station.homeLon = 7.0;
        station.coordText = "kept";
        const BearingOutcome o = ShowBearingAndDistance(station, "JO32");
        EXPECT_FALSE(o.ok) << own;
        EXPECT_EQ(o.line, QString()) << own;
        EXPECT_EQ(o.targetText, "JO32HH");
        EXPECT_EQ(prompts.shown, QStringList { message }) << own;
        EXPECT_EQ(station.homeLon, 7.0);
        EXPECT_EQ(station.coordText, "kept");
    }
}

TEST(Bearing, AFourCharacterOwnLocatorStandsForItsHHSubsquare)
{
    RecordingPrompts prompts;
    Station station(prompts);
    station.settings.setText(Setting::MyLocator, "jo31");
    EXPECT_EQ(Locator::own("jo31"), std::optional<QString>("JO31HH"));
    EXPECT_EQ(Locator::own("JO31MM22"), std::optional<QString>("JO31MM22"));
    const BearingOutcome o = ShowBearingAndDistance(station, "JO32HH");
    ASSERT_TRUE(o.ok);
    EXPECT_TRUE(o.line.startsWith(QString::fromUtf8("JO31HH -> JO32HH QTF: 0.0\u00B0 / 180.0\u00B0")))
        << o.line.toStdString();
    EXPECT_DOUBLE_EQ(station.homeLon, 6 + 7.0 / 12);
    EXPECT_DOUBLE_EQ(station.homeLat, 51 + 7.0 / 24);
}
