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

TEST(GpsReceiver, TheFixOfAReceiverWithoutGsaComesFromGgaOrRmcAndGoesStale)
{
    qint64 now = 0;
    GpsReceiver r;
    r.setClock([&now] { return now; });
    const QByteArray gga8 = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
    const QByteArray rmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
    const struct {
        QByteArray bytes;
        qint64 at;
        FixKind fix;
    } steps[] = {
        { rmc, 0, FixKind::TwoD }, // a valid RMC alone: a position without height
        { gga8, 500, FixKind::ThreeD }, // GPS fix from eight satellites
        { {}, 3500, FixKind::ThreeD }, // 3 s after the GGA: still fresh
        { {}, 3501, FixKind::None }, // older than 3 s: stale, no fix
        { "$GPGSA,A,2,17,22*37\r\n", 4000, FixKind::TwoD }, // a fresh GSA decides
        { gga8, 7001, FixKind::ThreeD }, // the GSA went stale; the GGA speaks again
    };
    for (const auto& s : steps) {
        now = s.at;
        r.feed(s.bytes);
        EXPECT_EQ(r.fix(), s.fix) << "at " << s.at;
    }
    EXPECT_TRUE(r.isStale(NmeaReceiveBuffer::Type::GSA));
    EXPECT_FALSE(r.isStale(NmeaReceiveBuffer::Type::GGA));
    EXPECT_TRUE(r.isStale(NmeaReceiveBuffer::Type::GSV)); // never arrived
    EXPECT_EQ(GpsDisplay::usedText(r), "GPS 17 22 (stale)");
}

TEST(GpsReceiver, UsedSatellitesOfEverySystem)
{
    GpsReceiver r;
    r.setClock([] { return qint64(0); });
    const auto got = r.feed(
        // NMEA 4.11: system ids, GPS with thirteen used (the list goes on in a second GSA).
        "$GNGSA,A,3,01,03,05,07,09,11,13,15,17,19,21,23,0.91,0.48,0.77,1*06\r\n"
        "$GNGSA,A,3,25,,,,,,,,,,,,0.91,0.48,0.77,1*02\r\n"
        "$GNGSA,A,3,65,67,69,71,73,75,77,79,81,83,85,87,0.91,0.48,0.77,2*05\r\n"
        // NMEA 3: a GN GSA without system id is told by its satellite numbers; talkers name theirs.
        "$GNGSA,A,3,02,05,,09,12,,,24,,,,,2.5,1.3,2.1*21\r\n"
        "$GAGSA,A,3,04,11,,,,,,,,,,,2.5,1.3,2.1*21\r\n"
        "$BDGSA,A,3,201,205,,,,,,,,,,,2.5,1.3,2.1*21\r\n");
    ASSERT_EQ(got.size(), 6);
    EXPECT_EQ(got[2].system, GnssSystem::GLONASS);
    EXPECT_EQ(GpsDisplay::usedText(r),
        "GPS 2 5 9 12 24\nGLONASS 65 67 69 71 73 75 77 79 81 83 85 87\nGalileo 4 11\nBeiDou 201 205");
    // A second with all of GPS's thirteen in it: its second GSA continues the first.
    r.feed("$GPRMC,235947,V,,,,,,,,,*3F\r\n"
           "$GNGSA,A,3,01,03,05,07,09,11,13,15,17,19,21,23,0.91,0.48,0.77,1*06\r\n"
           "$GNGSA,A,3,25,,,,,,,,,,,,0.91,0.48,0.77,1*02\r\n");
    EXPECT_EQ(GpsDisplay::usedText(r).section(u'\n', 0, 0), "GPS 1 3 5 7 9 11 13 15 17 19 21 23 25");
}
