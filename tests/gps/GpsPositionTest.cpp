#include "gps/GpsPosition.h"
#include "geo/Locator.h"

#include "tests/gps/PrintQString.h"

#include <gtest/gtest.h>

#include <random>

TEST(GpsPosition, HemisphereLettersGiveTheSign)
{
    EXPECT_DOUBLE_EQ(SignedDegrees(48.5, u"N"), 48.5);
    EXPECT_DOUBLE_EQ(SignedDegrees(48.5, u"S"), -48.5);
    EXPECT_DOUBLE_EQ(SignedDegrees(11.5, u"E"), 11.5);
    EXPECT_DOUBLE_EQ(SignedDegrees(11.5, u"W"), -11.5);
    const auto p = PositionFrom(22.9068, u"S", 43.1729, u"W");
    ASSERT_TRUE(p);
    EXPECT_DOUBLE_EQ(p->lat, -22.9068);
    EXPECT_DOUBLE_EQ(p->lon, -43.1729);
    EXPECT_FALSE(PositionFrom(0, u" ", 0, u" ")); // an RMC without fix
    EXPECT_FALSE(PositionFrom(48, u"E", 11, u"N")); // letters swapped
    EXPECT_FALSE(PositionFrom(91, u"N", 11, u"E"));
    EXPECT_FALSE(PositionFrom(48, u"N", 180.5, u"W"));
}

TEST(GpsPosition, LocatorsOfKnownPlacesAndEdges)
{
    EXPECT_EQ(PositionToLocator({ 48.1173, 11.51666667 }), "JN58SC");
    EXPECT_EQ(PositionToLocator({ 0, 0 }), "JJ00AA");
    EXPECT_EQ(PositionToLocator({ -90, -180 }), "AA00AA");
    EXPECT_EQ(PositionToLocator({ 90, 180 }), "RR99XX");
    EXPECT_EQ(PositionToLocator({ 48.0, 12.0 }, 4), "JN68");
    EXPECT_EQ(PositionToLocator({ 51.5, -0.125 }, 10), "IO91WM50AA");
    EXPECT_EQ(PositionToLocator({ 40.7128, -74.006 }, 8), "FN20XR91");
    EXPECT_EQ(PositionToLocator({ 100, 0 }), "");
}

TEST(GpsPosition, TheLocatorsCornerLiesJustSouthWestOfThePoint)
{
    std::mt19937 gen(7);
    std::uniform_real_distribution<double> lat(-89.999, 89.999), lon(-179.999, 179.999);
    for (int i = 0; i < 2000; ++i) {
        const GpsPosition p { lat(gen), lon(gen) };
        const QString l = PositionToLocator(p);
        ASSERT_TRUE(Locator::isValid(l)) << l.toStdString();
        const GeoPoint corner = LocatorToDegrees(l);
        EXPECT_LE(corner.lon, p.lon + 1e-9);
        EXPECT_GT(corner.lon + 1.0 / 12, p.lon);
        EXPECT_LE(corner.lat, p.lat + 1e-9);
        EXPECT_GT(corner.lat + 1.0 / 24, p.lat);
    }
}

TEST(GpsPosition, Text)
{
    EXPECT_EQ(PositionText({ -22.9068, -43.1729 }), "22.906800° S  43.172900° W");
    EXPECT_EQ(PositionText({ 48.1173, 11.51666667 }), "48.117300° N  11.516667° E");
}
