#include "gps/GpsReceiver.h"
#include "gps/GpsDisplay.h"

#include "tests/gps/PrintQString.h"

#include <gtest/gtest.h>

namespace {
const QByteArray kRmcV = "$GPRMC,235947,V,,,,,,,,,*3F\r\n";
const QByteArray kRmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
const QByteArray kGga = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
const QByteArray kGsa3 = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n";
const QByteArray kGsa2 = "$GPGSA,A,2,17,22*37\r\n";
const QByteArray kGsa1 = "$GPGSA,A,1,,,,,,,,,,,,,,,*1E\r\n";
const QByteArray kGsv = "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75\r\n";
const QByteArray kGsv2 = "$GPGSV,2,2,08,15,12,050,,17,60,190,33,22,33,250,40,24,05,010,*7A\r\n";
} // namespace

TEST(GpsReceiver, FixNeedsGsaAndAPosition)
{
    GpsReceiver r;
    EXPECT_EQ(r.feed(kRmcV).size(), 1);
    EXPECT_EQ(r.fix(), FixKind::None);
    EXPECT_FALSE(r.position());
    EXPECT_EQ(GpsDisplay::gridText(r.fix(), r.position()), "GPS NO FIX");

    r.feed(kRmc);
    ASSERT_TRUE(r.position());
    EXPECT_EQ(GpsDisplay::gridText(r.fix(), r.position()), "GPS NO FIX"); // no GSA yet

    r.feed(kGsa2);
    EXPECT_EQ(r.fix(), FixKind::TwoD);
    EXPECT_EQ(GpsDisplay::gridText(r.fix(), r.position()), "JN58SC   48.117300° N  11.516667° E");
    EXPECT_EQ(GpsDisplay::gridColour(r.fix()), 65535);
    r.feed(kGsa3);
    EXPECT_EQ(GpsDisplay::gridColour(r.fix()), 65280);
    r.feed(kGsa1);
    EXPECT_EQ(r.fix(), FixKind::None);
    EXPECT_EQ(GpsDisplay::gridColour(r.fix()), 255);

    // An RMC without position does not wipe the last one.
    r.feed(kRmcV);
    EXPECT_TRUE(r.position());
}

TEST(GpsReceiver, RejectedSentencesAreDroppedSilently)
{
    GpsReceiver r;
    QByteArray bad = kRmc;
    bad.replace("*6A", "*6B");
    EXPECT_TRUE(r.feed(bad).isEmpty());
    EXPECT_TRUE(r.buffer().pending().isEmpty());
    EXPECT_FALSE(r.position());
}

TEST(GpsReceiver, GnssTalkersDecodeLikeGps)
{
    GpsReceiver gp, gn;
    gp.feed(kRmc + kGga);
    // The same sentences from a multi-system receiver: the talker changes the checksum.
    const auto got = gn.feed("$GNRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*74\r\n"
                             "$GNGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*59\r\n");
    ASSERT_EQ(got.size(), 2);
    EXPECT_EQ(got[0].talker, "GN");
    EXPECT_EQ(gn.rmc().time, gp.rmc().time);
    EXPECT_EQ(gn.rmc().latitude, gp.rmc().latitude);
    EXPECT_EQ(gn.gga().quality, gp.gga().quality);
    EXPECT_EQ(gn.gga().altitude, gp.gga().altitude);
    EXPECT_EQ(gn.position()->lat, gp.position()->lat);
}

TEST(GpsReceiver, GsvCyclesOfEachTalkerAndTheirGroups)
{
    GpsReceiver r;
    const auto got = r.feed(kGsv + kGsv2 + "$GLGSV,1,1,01,65,23,040,31*50\r\n");
    ASSERT_EQ(got.size(), 3);
    EXPECT_EQ(GpsDisplay::gsvGroups(got[0].gsv), "[1 40 83 46] [2 17 308 41] [12 7 344 39] [14 22 228 45]");
    EXPECT_EQ(GpsDisplay::gsvGroups(got[1].gsv), "[15 12 50 -] [17 60 190 33] [22 33 250 40] [24 5 10 -]");
    EXPECT_EQ(GpsDisplay::gsvGroups(got[2].gsv), "[65 23 40 31]");
    EXPECT_EQ(r.gsv("GP").prn[8], 24); // GLONASS's message 1 did not empty GPS's tables
    EXPECT_EQ(r.gsv("GL").satellitesInView, 1);
}

TEST(GpsDisplay, BoxTexts)
{
    EXPECT_EQ(GpsDisplay::unitText("M"), "m");
    EXPECT_EQ(GpsDisplay::unitText("F"), "F");
    EXPECT_EQ(GpsDisplay::unitText(" "), " ");
    EXPECT_EQ(GpsDisplay::numberText(48.1173), "48.1173");
    EXPECT_EQ(GpsDisplay::numberText(11.51666667), "11.51666667");
    EXPECT_EQ(GpsDisplay::numberText(-5.7), "-5.7");
    EXPECT_EQ(GpsDisplay::numberText(0), "0");
    EXPECT_EQ(GpsDisplay::numberText(545.0), "545");
    EXPECT_EQ(GpsDisplay::selectionText(true), "A");
    EXPECT_EQ(GpsDisplay::validityText(false), "V");
}
