#include "core/Station.h"
#include "geo/Bearing.h"
#include "geo/Locator.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(Locator, ValidationFollowsThePatterns)
{
    for (const char* ok : {"JO31", "JO31mm", "JO31MM", "JO31YZ", "AA00AA", "RR99XX", "JO31MM22", "JO31MM22ax",
                           "JO31[`", "JO31Ax00^_"})
        EXPECT_TRUE(Locator::isValid(QString::fromLatin1(ok))) << ok;
    for (const char* bad : {"jo31", "Jo31", "JS31", "JO3", "JO31M", "JO31MMM", "JO31MM2", "JO31MM223",
                            "JO31MM22axx", "", "JO31My", "JO31MM2A", "JOA1", "JO31MM22a{", "SO62"})
        EXPECT_FALSE(Locator::isValid(QString::fromLatin1(bad))) << bad;
}

TEST(Locator, CheckSetsTheFlagAndPromptsOncePerFailure)
{
    RecordingPrompts prompts;
    Station station(prompts);
    CheckLocator(station, "jo31");
    EXPECT_TRUE(station.locatorInvalid);
    EXPECT_EQ(prompts.shown, QStringList{"Invalid Gridlocator:"});
    CheckLocator(station, "JO31");
    EXPECT_FALSE(station.locatorInvalid);
    EXPECT_EQ(prompts.shown.size(), 1);
}

TEST(Locator, ConversionGivesTheSouthWestCorner)
{
    auto expectAt = [](const char* l, double lon, double lat) {
        const GeoPoint p = LocatorToDegrees(QString::fromLatin1(l));
        EXPECT_DOUBLE_EQ(p.lon, lon) << l;
        EXPECT_DOUBLE_EQ(p.lat, lat) << l;
    };
    expectAt("AA00AA", -180, -90);
    expectAt("JJ00AA", 0, 0);
    expectAt("RR99XX", 178 + 23.0 / 12, 89 + 23.0 / 24);
    expectAt("JO31mm", 6 + 12.0 / 12, 51 + 12.0 / 24);
    expectAt("JO31MM", 6 + 12.0 / 12, 51 + 12.0 / 24);
    expectAt("JO31MM37", 7 + 3.0 / 120, 51.5 + 7.0 / 240);
    expectAt("JO31MM37CB", 7 + 3.0 / 120 + 2.0 / 2880, 51.5 + 7.0 / 240 + 1.0 / 5760);
    expectAt("JO31", 6, 51); // a bare square converts to its corner
    EXPECT_EQ(Locator::completed("JO31"), "JO31HH");
    EXPECT_EQ(Locator::completed("JO31MM"), "JO31MM");
    expectAt("JO31HH", 6 + 7.0 / 12, 51 + 7.0 / 24);
}

TEST(Locator, CoordinateTextHasFifteenDigitsAndNoTrailingZeros)
{
    EXPECT_EQ(CoordText(LocatorToDegrees("JN48TH")), "9.58333333333333,48.2916666666667");
    EXPECT_EQ(CoordText(LocatorToDegrees("JJ00AA")), "0,0");
    EXPECT_EQ(CoordText(LocatorToDegrees("AA00AA")), "-180,-90");
    EXPECT_EQ(CoordText({-2.5, 0.000347222222222222}), "-2.5,0.000347222222222222");
}
