#include "sim/devices/SimGps.h"

#include <QList>
#include <gtest/gtest.h>

namespace {

QList<QByteArray> lines(const QByteArray& burst)
{
    QList<QByteArray> out;
    for (qsizetype from = 0; from < burst.size();) {
        const qsizetype end = burst.indexOf("\r\n", from);
        out << burst.mid(from, end + 2 - from);
        from = end + 2;
    }
    return out;
}

const QDateTime start(QDate(2024, 3, 23), QTime(12, 35, 19), Qt::UTC);

} // namespace

TEST(SimGps, WritesPositionsInDegreesAndMinutes)
{
    EXPECT_EQ(SimGps::longitudeFields(-0.5), QByteArray("00030.0000,W"));
    EXPECT_EQ(SimGps::latitudeFields(10.999999999), QByteArray("1100.0000,N")); // 59.99999' carries
}

// The GPS window reads these bursts, checksums and all, from the running simulator.
TEST(SimGps, OneBurstHoldsRmcGgaGsaAndGsv)
{
    const SimGps gps(48.3125, 9.625, start);
    const QList<QByteArray> burst = lines(gps.burst(start));
    ASSERT_EQ(burst.size(), 6);
    EXPECT_TRUE(burst[0].startsWith("$GPRMC,123519.00,A,4818.7500,N,00937.5000,E,0.0,0.0,230324,"));
    EXPECT_TRUE(burst[1].startsWith("$GPGGA,123519.00,4818.7500,N,00937.5000,E,1,08,0.9,512.0,M,"));
    EXPECT_TRUE(burst[2].startsWith("$GPGSA,A,3,02,05,07,09,13,15,20,30,,,,,1.6,0.9,1.3*"));
    EXPECT_TRUE(burst[3].startsWith("$GPGSV,3,1,10,02,67,045,44,"));
    EXPECT_TRUE(burst[4].startsWith("$GPGSV,3,2,10,"));
    EXPECT_TRUE(burst[5].startsWith("$GPGSV,3,3,10,18,08,160,,25,04,020,*"));
}

TEST(SimGps, WritesOnceASecond)
{
    SimGps gps(48.3125, 9.625, start.addMSecs(400));
    EXPECT_EQ(gps.tick(500), QByteArray());
    const QByteArray first = gps.tick(100); // the clock reaches 12:35:20
    EXPECT_TRUE(first.startsWith("$GPRMC,123520.00,")) << first.constData();
    EXPECT_EQ(gps.tick(900), QByteArray());
    EXPECT_TRUE(gps.tick(100).startsWith("$GPRMC,123521.00,"));
    EXPECT_TRUE(gps.tick(5000).startsWith("$GPRMC,123526.00,")); // after a stall, only the newest
    EXPECT_EQ(gps.bursts(), 3);
    EXPECT_EQ(gps.receive("$PMTK220,1000*1F\r\n"), QByteArray());
}

// Which sentence types a burst holds, in order ("GGA GSA GSV GSV GSV RMC VTG").
QByteArray order(const QByteArray& burst)
{
    QByteArrayList types;
    for (const QByteArray& line : lines(burst))
        types << line.mid(3, 3);
    return types.join(' ');
}

TEST(SimGps, ProfilesWriteTheOrdersOfRealReceivers)
{
    const struct {
        SimGps::Profile profile;
        QByteArray order;
    } cases[] = {
        { SimGps::Profile::Plain, "RMC GGA GSA GSV GSV GSV" },
        { SimGps::Profile::Mtk, "GGA GSA GSV GSV GSV RMC VTG" },
        { SimGps::Profile::Sirf, "GGA GSA GSV GSV GSV RMC" },
        { SimGps::Profile::Ublox,
            "RMC VTG GGA GSA GSA GSA GSA GSA GSV GSV GSV GSV GSV GSV GSV GSV GSV GSV GSV GSV GSV GSV GSV GSV "
            "GLL" },
    };
    for (const auto& c : cases) {
        const SimGps gps(48.3125, 9.625, start, "GP", c.profile);
        EXPECT_EQ(order(gps.burst(start)), c.order) << SimGps::profileName(c.profile).toStdString();
        EXPECT_EQ(SimGps::profileNamed(SimGps::profileName(c.profile)), c.profile);
    }
    EXPECT_EQ(SimGps::profileNamed("garmin"), std::nullopt);
    // u-blox: NMEA 4.11 system ids, more than twelve satellites of a system in view.
    const QList<QByteArray> ublox
        = lines(SimGps(48.3125, 9.625, start, "GP", SimGps::Profile::Ublox).burst(start));
    EXPECT_TRUE(ublox[3].startsWith("$GNGSA,A,3,01,03,05,07,09,11,13,15,17,19,21,23,0.98,0.55,0.81,1*"));
    EXPECT_TRUE(ublox[4].startsWith("$GNGSA,A,3,25,,,,,,,,,,,,0.98,0.55,0.81,1*"));
    EXPECT_TRUE(ublox[8].startsWith("$GPGSV,4,1,15,"));
    EXPECT_TRUE(ublox[12].startsWith("$GLGSV,4,1,14,"));
}

TEST(SimGps, AProfileTricklesOutAtItsLinesSpeed)
{
    SimGps gps(48.3125, 9.625, start.addMSecs(900), "GP", SimGps::Profile::Sirf);
    const QByteArray whole = gps.burst(start.addSecs(1));
    QByteArray got = gps.tick(100); // the second begins: 4800 baud carry 48 characters in 100 ms
    EXPECT_EQ(got, whole.left(48));
    while (got.size() < whole.size()) {
        const QByteArray piece = gps.tick(100);
        ASSERT_FALSE(piece.isEmpty());
        ASSERT_LE(piece.size(), 48);
        got += piece;
    }
    EXPECT_EQ(got, whole);
    EXPECT_EQ(gps.bursts(), 1);
}
