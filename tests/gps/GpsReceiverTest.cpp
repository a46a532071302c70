#include "gps/GpsReceiver.h"
#include "gps/GpsDisplay.h"

#include "tests/gps/PrintQString.h"

#include <gtest/gtest.h>

TEST(GpsReceiver, FixColoursAndTheLastPosition)
{
    GpsReceiver r;
    r.feed("$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n$GPGSA,A,2,17,22*37\r\n");
    EXPECT_EQ(GpsDisplay::gridColour(r.fix()), 65535); // yellow
    r.feed("$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n");
    EXPECT_EQ(GpsDisplay::gridColour(r.fix()), 65280); // green
    r.feed("$GPGSA,A,1,,,,,,,,,,,,,,,*1E\r\n");
    EXPECT_EQ(GpsDisplay::gridColour(r.fix()), 255); // red
    // An RMC without position does not wipe the last one.
    r.feed("$GPRMC,235947,V,,,,,,,,,*3F\r\n");
    ASSERT_TRUE(r.position());
    EXPECT_EQ(PositionText(*r.position()), "48.117300° N  11.516667° E");
}

TEST(GpsReceiver, GsvCyclesOfEachTalkerAndTheirGroups)
{
    GpsReceiver r;
    const auto got = r.feed("$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75\r\n"
                            "$GPGSV,2,2,08,15,12,050,,17,60,190,33,22,33,250,40,24,05,010,*7A\r\n"
                            "$GLGSV,1,1,01,65,23,040,31*50\r\n");
    ASSERT_EQ(got.size(), 3);
    EXPECT_EQ(GpsDisplay::gsvGroups(got[0].gsv), "[1 40 83 46] [2 17 308 41] [12 7 344 39] [14 22 228 45]");
    EXPECT_EQ(GpsDisplay::gsvGroups(got[1].gsv), "[15 12 50 -] [17 60 190 33] [22 33 250 40] [24 5 10 -]");
    EXPECT_EQ(GpsDisplay::gsvGroups(got[2].gsv), "[65 23 40 31]");
    EXPECT_EQ(r.gsv("GP").prn[8], 24); // GLONASS's message 1 did not empty GPS's tables
    EXPECT_EQ(r.gsv("GL").satellitesInView, 1);
}
