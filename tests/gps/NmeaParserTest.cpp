#include "gps/GpsPosition.h"
#include "gps/Nmea.h"

#include "tests/gps/PrintQString.h"

#include <gtest/gtest.h>

// Sentences as receivers send them, checksums worked out by hand.
namespace {
const QString kRmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A";
const QString kGga = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47";
const QString kGsa = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39";
const QString kGsv = "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75";

// "$" + body + "*" + its checksum.
QString sentence(const QString& body)
{
    return '$' + body + '*' + QString::number(NmeaChecksum(body), 16);
}
} // namespace

TEST(NmeaSupport, ChecksumSplitAndFieldConversions)
{
    EXPECT_EQ(NmeaChecksum(u"GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1"), 0x39);
    EXPECT_EQ(HexValue(u"6a"), 106);
    EXPECT_EQ(HexValue(u"FFFFFFFF"), -1); // a 32-bit integer
    for (const char16_t* bad : { u"", u"6G", u"*6A", u"6 A", u"123456789" })
        EXPECT_EQ(HexValue(bad), -1);
    const NmeaFields f = SplitFields(u"$GPGSV,a,,b", u',');
    ASSERT_EQ(f.count(), 4);
    EXPECT_EQ(f[1], u"$GPGSV");
    EXPECT_EQ(f[3], u"");
    EXPECT_EQ(f[4], u"b");
    EXPECT_EQ(SplitFields(u"no separator", u',').count(), 1);

    // "," counts as the decimal point; reading stops at the "*".
    EXPECT_DOUBLE_EQ(Nmea::number(u"-5,7"), -5.7);
    EXPECT_DOUBLE_EQ(Nmea::number(u"2.1*39"), 2.1);
    EXPECT_DOUBLE_EQ(Nmea::number(u" "), 0.0);
    // Degrees and minutes, rounded to 8 decimals with halves away from zero.
    EXPECT_DOUBLE_EQ(Nmea::degrees(u"4807.038"), 48.1173);
    EXPECT_DOUBLE_EQ(Nmea::degrees(u"01131.000"), 11.51666667);
    EXPECT_DOUBLE_EQ(Nmea::degrees(u"7.5"), 0.125);
    EXPECT_DOUBLE_EQ(Nmea::round8(0.123456785), 0.12345679);
    EXPECT_DOUBLE_EQ(Nmea::round8(-0.123456785), -0.12345679);
    EXPECT_DOUBLE_EQ(Nmea::round8(0.123456784), 0.12345678);
    EXPECT_EQ(Nmea::timeText(u"083559.00"), "08:35:59");
    EXPECT_EQ(Nmea::timeText(u"0835"), "08:35:");
    EXPECT_EQ(Nmea::dateText(u"091202"), "09.12.02");
}

TEST(NmeaParser, GgaQualityAndGsaFixTexts)
{
    const std::pair<const char*, const char*> qualities[] = { { "0", "no fix" }, { "1", "GPS fix" },
        { "2", "DGPS fix" }, { "3", "unknown" }, { "6", "guessed" }, { "9", "unknown" } };
    for (auto [field, text] : qualities) {
        GgaData g;
        ASSERT_TRUE(ParseGGA(
            sentence(QString("GPGGA,123519,4807.038,N,01131.000,E,%1,08,0.9,545.4,M,46.9,M,,").arg(field)),
            g));
        EXPECT_EQ(g.quality, text) << field;
    }
    const std::pair<const char*, const char*> fixes[]
        = { { "1", "No-Fix" }, { "2", "2D-Fix" }, { "3", "3D-Fix" }, { "0", "unknown" }, { "", "unknown" } };
    for (auto [field, text] : fixes) {
        GsaData a;
        a.automatic = true;
        ASSERT_TRUE(ParseGSA(sentence(QString("GPGSA,M,%1,,,,,,,,,,,,,,,").arg(field)), a));
        EXPECT_EQ(a.fix, text) << field;
        EXPECT_FALSE(a.automatic); // "M": manual selection
    }
}

TEST(NmeaParser, ShortGsaYieldsWhatItHolds)
{
    GsaData a;
    a.pdop = 9.9;
    a.hdop = 8.8;
    a.satellites[7] = 30;
    ASSERT_TRUE(ParseGSA("$GPGSA,A,2,17,22*37", a));
    EXPECT_EQ(a.fix, "2D-Fix");
    const SatelliteTable used { std::nullopt, 17, 22 };
    EXPECT_EQ(a.satellites, used);
    EXPECT_DOUBLE_EQ(a.pdop, 9.9); // not in the sentence: as it was
    ASSERT_TRUE(ParseGSA("$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5*38", a));
    EXPECT_DOUBLE_EQ(a.pdop, 2.5);
    EXPECT_DOUBLE_EQ(a.hdop, 8.8);
    EXPECT_EQ(a.systemId, 0);
    // NMEA 4.10 names the satellite system after the dilutions.
    ASSERT_TRUE(ParseGSA("$GNGSA,A,3,65,66,72,81,88,,,,,,,,1.32,0.78,1.06,2*05", a));
    EXPECT_EQ(a.systemId, 2);
    EXPECT_DOUBLE_EQ(a.vdop, 1.06);
}

TEST(NmeaParser, GsvFillsTheTablesOfOneCycle)
{
    GsvData v;
    ASSERT_TRUE(ParseGSV(kGsv, v));
    EXPECT_EQ(v.messageCount, 2);
    EXPECT_EQ(v.satellitesInView, 8);
    EXPECT_EQ(v.snr[4], 45); // the last field, before the checksum
    // Message 2 fills slots 5 to 8; a satellite without SNR leaves that entry empty.
    ASSERT_TRUE(ParseGSV("$GPGSV,2,2,08,15,12,050,,17,60,190,33,22,33,250,40,24,05,010,*7A", v));
    EXPECT_EQ(v.prn, (GsvTable { std::nullopt, 1, 2, 12, 14, 15, 17, 22, 24 }));
    EXPECT_EQ(v.snr, (GsvTable { std::nullopt, 46, 41, 39, 45, std::nullopt, 33, 40 }));
    EXPECT_EQ(v.azimuth[8], 10);
    // A new cycle empties the tables first; NMEA 4.10's signal number after the groups is no
    // satellite.
    ASSERT_TRUE(ParseGSV("$GPGSV,3,1,11,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45,1*61", v));
    EXPECT_EQ(v.satellitesInView, 11);
    EXPECT_EQ(v.prn, (GsvTable { std::nullopt, 1, 2, 12, 14 }));
    // Satellites past the twelfth have their slots too: message 4 fills slot 13.
    ASSERT_TRUE(ParseGSV("$GLGSV,4,4,13,88,10,010,20*55", v));
    EXPECT_EQ(v.messageNumber, 4);
    EXPECT_EQ(v.satellitesInView, 13);
    EXPECT_EQ(v.prn[13], 88);
    EXPECT_EQ(v.snr[13], 20);
}

TEST(NmeaParser, EmptyFieldsKeepTheirPlaces)
{
    // Runs of empty fields: with a naive split the following fields would slide left.
    RmcData r;
    r.date = "01.01.00";
    ASSERT_TRUE(ParseRMC("$GPRMC,235947,V,,,,,,,,,*3F", r));
    EXPECT_EQ(r.time, "23:59:47");
    EXPECT_FALSE(r.valid);
    EXPECT_EQ(r.latHemisphere, " ");
    EXPECT_EQ(r.lonHemisphere, " ");
    EXPECT_EQ(r.date, "01.01.00"); // an empty date leaves it as it was
    GgaData g;
    ASSERT_TRUE(ParseGGA("$GPGGA,235947,,,,,0,00,,,M,,M,,*68", g));
    EXPECT_EQ(g.quality, "no fix");
    EXPECT_EQ(g.altitudeUnit, "M");
    EXPECT_EQ(g.separationUnit, "M");
    GsaData a;
    ASSERT_TRUE(ParseGSA("$GPGSA,A,1,,,,,,,,,,,,,,,*1E", a));
    EXPECT_EQ(a.fix, "No-Fix");
    EXPECT_EQ(a.satellites, SatelliteTable {});
    ASSERT_TRUE(ParseRMC("$GPRMC,,V,,,,,,,,,*31", r));
    EXPECT_EQ(r.time, "");
}

TEST(NmeaParser, LowerCaseSentencesAndChecksumDigitsAreAccepted)
{
    RmcData r;
    ASSERT_TRUE(ParseRMC(kRmc.toLower(), r));
    EXPECT_EQ(r.latHemisphere, "N");
    EXPECT_DOUBLE_EQ(r.latitude, 48.1173);
    GgaData g;
    ASSERT_TRUE(ParseGGA("  $gpgga,123519,4807.038,n,01131.000,e,1,08,0.9,545.4,m,46.9,m,,*47  ", g));
    EXPECT_EQ(g.altitudeUnit, "M");
    ASSERT_TRUE(ParseRMC("$GNRMC,083559.00,A,2254.40800,S,04310.37400,W,0.004,77.52,091202,,,A*4d", r));
    EXPECT_EQ(r.latHemisphere, "S");
}

TEST(NmeaParser, RejectedSentencesChangeNothing)
{
    RmcData r;
    r.time = "keep";
    r.latitude = 1.5;
    r.date = "keep";
    for (const QString& bad : {
             QString(kRmc).replace("*6A", "*6B"), // wrong checksum
             QString(kRmc).remove('*'), // no "*"
             QString(kRmc).replace("GPRMC", "GPRMB"), // wrong type
             QString(kRmc).mid(1), // no "$"
             kGga, // a good sentence of another type
             QString(kRmc).replace("*6A", "*"), // no digits
             QString(kRmc).replace("*6A", "*6A5"), // a different number
             QString("$GPRMC,123519,A*07"), // too short for RMC, checksum good
             QString(),
         }) {
        EXPECT_FALSE(ParseRMC(bad, r)) << bad.toStdString();
        EXPECT_TRUE(r.time == "keep" && r.latitude == 1.5 && r.date == "keep" && !r.valid)
            << bad.toStdString();
    }
    GsaData a;
    a.fix = "keep";
    EXPECT_FALSE(ParseGSA(QString(kGsa).replace("*39", "*38"), a));
    EXPECT_FALSE(ParseGSA(kGsv, a));
    EXPECT_EQ(a.fix, "keep");
    GsvData v;
    EXPECT_FALSE(ParseGSV(QString(kGsv).replace("*75", "*57"), v));
    EXPECT_EQ(v.messageCount, 0);
    GgaData g;
    EXPECT_FALSE(ParseGGA(QString(kGga).replace("545.4", "545.5"), g));
    EXPECT_TRUE(g.quality.isEmpty());
}

TEST(NmeaParser, ReceiversInAllFourHemispheres)
{
    const struct {
        const char* sentence;
        double lat, lon;
        const char* locator;
    } cases[] = {
        // A GPS-only receiver in Munich (north, east).
        { "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A", 48.1173, 11.51666667,
            "JN58SC" },
        // A multi-system receiver in Rio de Janeiro (south, west).
        { "$GNGGA,083559.00,2254.40800,S,04310.37400,W,1,12,0.82,11.2,M,-5.7,M,,*60", -22.9068, -43.1729,
            "GG87JC" },
        // A chipset with a mode letter, Sydney (south, east).
        { "$GPRMC,002153.000,A,3352.1280,S,15112.5580,E,0.12,271.80,150624,,,D*7A", -33.8688, 151.2093,
            "QF56OD" },
        // Differential fix in New York (north, west).
        { "$GNGGA,163012.00,4042.76800,N,07400.36000,W,2,10,1.02,10.5,M,-34.2,M,,0000*47", 40.7128, -74.006,
            "FN20XR" },
    };
    for (const auto& c : cases) {
        std::optional<GpsPosition> p;
        RmcData r;
        GgaData g;
        if (ParseRMC(c.sentence, r))
            p = PositionFrom(r.latitude, r.latHemisphere, r.longitude, r.lonHemisphere);
        else if (ParseGGA(c.sentence, g))
            p = PositionFrom(g.latitude, g.latHemisphere, g.longitude, g.lonHemisphere);
        ASSERT_TRUE(p) << c.sentence;
        EXPECT_DOUBLE_EQ(p->lat, c.lat) << c.sentence;
        EXPECT_DOUBLE_EQ(p->lon, c.lon) << c.sentence;
        EXPECT_EQ(PositionToLocator(*p), c.locator);
    }
}
