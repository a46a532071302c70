#include "gps/GpsPosition.h"
#include "geo/Locator.h"

#include "tests/gps/PrintQString.h"

#include <gtest/gtest.h>
#include <random>

TEST(GpsPosition, OnlyProperLettersAndValuesGiveAPosition)
{
    EXPECT_FALSE(PositionFrom(0, u" ", 0, u" ")); // an RMC without fix
    EXPECT_FALSE(PositionFrom(48, u"E", 11, u"N")); // letters swapped
    EXPECT_FALSE(PositionFrom(91, u"N", 11, u"E"));
    EXPECT_FALSE(PositionFrom(48, u"N", 180.5, u"W"));
}

TEST(GpsPosition, LocatorsAtTheEdgesAndCornersJustSouthWestOfThePoint)
{
    EXPECT_EQ(PositionToLocator({ 0, 0 }), "JJ00AA");
    EXPECT_EQ(PositionToLocator({ -90, -180 }), "AA00AA");
    EXPECT_EQ(PositionToLocator({ 90, 180 }), "RR99XX");
    EXPECT_EQ(PositionToLocator({ 48.0, 12.0 }, 4), "JN68");
    EXPECT_EQ(PositionToLocator({ 51.5, -0.125 }, 10), "IO91WM50AA");
    EXPECT_EQ(PositionToLocator({ 100, 0 }), "");
    std::mt19937 gen(7);
    std::uniform_real_distribution<double> lat(-89.999, 89.999), lon(-179.999, 179.999);
    for (int i = 0; i < 2000; ++i) {
        const GpsPosition p { lat(gen), lon(gen) };
        const QString l = PositionToLocator(p);
        ASSERT_TRUE(Locator::isValid(l)) << l.toStdString();
        const GeoPoint corner = LocatorToDegrees(l);
        ASSERT_TRUE(corner.lon <= p.lon + 1e-9 && corner.lon + 1.0 / 12 > p.lon) << l.toStdString();
        ASSERT_TRUE(corner.lat <= p.lat + 1e-9 && corner.lat + 1.0 / 24 > p.lat) << l.toStdString();
    }
}
