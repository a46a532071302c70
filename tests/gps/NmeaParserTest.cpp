#include "core/ReplaceText.h"
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
} // namespace

TEST(NmeaSupport, ChecksumHexValueAndSplit)
{
    EXPECT_EQ(NmeaChecksum(u"GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1"), 0x39);
    EXPECT_EQ(NmeaChecksum(u""), 0);
    EXPECT_EQ(HexValue(u"6A"), 106);
    EXPECT_EQ(HexValue(u"6a"), 106);
    EXPECT_EQ(HexValue(u"0"), 0);
    EXPECT_EQ(HexValue(u"FFFFFFFF"), -1); // a 32-bit integer
    for (const char16_t* bad : { u"", u"6G", u"*6A", u"6 A", u"123456789" })
        EXPECT_EQ(HexValue(bad), -1);

    const QString text = "$GPGSV,a,,b";
    const NmeaFields f = SplitFields(text, u',');
    ASSERT_EQ(f.count(), 4);
    EXPECT_EQ(f[1], u"$GPGSV");
    EXPECT_EQ(f[3], u"");
    EXPECT_EQ(f[4], u"b");
    EXPECT_TRUE(f[5].isEmpty());
    EXPECT_EQ(SplitFields(u"no separator", u',').count(), 1);
}

TEST(NmeaSupport, NumbersDegreesAndRounding)
{
    EXPECT_DOUBLE_EQ(Nmea::number(u" "), 0.0);
    EXPECT_DOUBLE_EQ(Nmea::number(u"2.1*39"), 2.1);
    EXPECT_DOUBLE_EQ(Nmea::number(u"-5,7"), -5.7);
    EXPECT_DOUBLE_EQ(Nmea::number(u" 1 2.5 "), 12.5);
    EXPECT_DOUBLE_EQ(Nmea::number(u"1e3x"), 1000.0);
    EXPECT_DOUBLE_EQ(Nmea::number(u"1e"), 1.0);
    EXPECT_DOUBLE_EQ(Nmea::number(u"M"), 0.0);
    EXPECT_DOUBLE_EQ(Nmea::number(u"1e999"), 0.0);
    EXPECT_TRUE(Nmea::isNumeric(u" 04 "));
    EXPECT_TRUE(Nmea::isNumeric(u"-1.5"));
    for (const char16_t* no : { u" ", u"", u"A", u"4*7F", u"1e", u"." })
        EXPECT_FALSE(Nmea::isNumeric(no)) << QString::fromUtf16(no).toStdString();

    EXPECT_DOUBLE_EQ(Nmea::degrees(u"4807.038"), 48.1173);
    EXPECT_DOUBLE_EQ(Nmea::degrees(u"01131.000"), 11.51666667);
    EXPECT_DOUBLE_EQ(Nmea::degrees(u"4807"), 48.11666667);
    EXPECT_DOUBLE_EQ(Nmea::degrees(u" "), 0.0);
    EXPECT_DOUBLE_EQ(Nmea::degrees(u"7.5"), 0.125);
    EXPECT_DOUBLE_EQ(Nmea::round8(0.123456785), 0.12345679);
    EXPECT_DOUBLE_EQ(Nmea::round8(-0.123456785), -0.12345679);
    EXPECT_DOUBLE_EQ(Nmea::round8(0.123456784), 0.12345678);
    EXPECT_EQ(Nmea::timeText(u"083559.00"), "08:35:59");
    EXPECT_EQ(Nmea::timeText(u"0835"), "08:35:");
    EXPECT_EQ(Nmea::dateText(u"091202"), "09.12.02");
}

TEST(NmeaParser, RmcFillsEveryOutput)
{
    RmcData r;
    ASSERT_TRUE(ParseRMC(kRmc, r));
    EXPECT_EQ(r.time, "12:35:19");
    EXPECT_TRUE(r.valid);
    EXPECT_DOUBLE_EQ(r.latitude, 48.1173);
    EXPECT_EQ(r.latHemisphere, "N");
    EXPECT_DOUBLE_EQ(r.longitude, 11.51666667);
    EXPECT_EQ(r.lonHemisphere, "E");
    EXPECT_DOUBLE_EQ(r.speed, 22.4);
    EXPECT_DOUBLE_EQ(r.course, 84.4);
    EXPECT_EQ(r.date, "23.03.94");
    EXPECT_DOUBLE_EQ(r.magneticVariation, 3.1);
}

TEST(NmeaParser, GgaFillsEveryOutput)
{
    GgaData g;
    ASSERT_TRUE(ParseGGA(kGga, g));
    EXPECT_EQ(g.time, "12:35:19");
    EXPECT_DOUBLE_EQ(g.latitude, 48.1173);
    EXPECT_EQ(g.latHemisphere, "N");
    EXPECT_DOUBLE_EQ(g.longitude, 11.51666667);
    EXPECT_EQ(g.lonHemisphere, "E");
    EXPECT_EQ(g.quality, "GPS fix");
    EXPECT_EQ(g.satellites, 8);
    EXPECT_DOUBLE_EQ(g.hdop, 0.9);
    EXPECT_DOUBLE_EQ(g.altitude, 545.4);
    EXPECT_EQ(g.altitudeUnit, "M");
    EXPECT_DOUBLE_EQ(g.separation, 46.9);
    EXPECT_EQ(g.separationUnit, "M");
}

TEST(NmeaParser, GgaQualityTexts)
{
    auto qualityOf = [](const char* q) {
        const QString body
            = QStringLiteral("GPGGA,123519,4807.038,N,01131.000,E,%1,08,0.9,545.4,M,46.9,M,,").arg(q);
        GgaData g;
        EXPECT_TRUE(ParseGGA('$' + body + '*' + QString::number(NmeaChecksum(body), 16), g)) << q;
        return g.quality;
    };
    EXPECT_EQ(qualityOf("0"), "no fix");
    EXPECT_EQ(qualityOf("1"), "GPS fix");
    EXPECT_EQ(qualityOf("2"), "DGPS fix");
    EXPECT_EQ(qualityOf("6"), "guessed");
    for (const char* q : { "3", "4", "5", "7", "9" })
        EXPECT_EQ(qualityOf(q), "unknown") << q;
}

TEST(NmeaParser, GsaReadsSatellitesAndDilutions)
{
    GsaData a;
    ASSERT_TRUE(ParseGSA(kGsa, a));
    EXPECT_TRUE(a.automatic);
    EXPECT_EQ(a.fix, "3D-Fix");
    const std::optional<int> used[13] = { {}, 4, 5, {}, 9, 12, {}, {}, 24, {}, {}, {}, {} };
    for (int i = 1; i <= 12; ++i)
        EXPECT_EQ(a.satellites[i], used[i]) << i;
    EXPECT_DOUBLE_EQ(a.pdop, 2.5);
    EXPECT_DOUBLE_EQ(a.hdop, 1.3);
    EXPECT_DOUBLE_EQ(a.vdop, 2.1);

    // Fix texts; "M" is manual selection.
    const std::pair<const char*, const char*> fixes[]
        = { { "1", "No-Fix" }, { "2", "2D-Fix" }, { "3", "3D-Fix" }, { "0", "unknown" }, { "", "unknown" } };
    for (auto [field, text] : fixes) {
        const QString body = QStringLiteral("GPGSA,M,%1,,,,,,,,,,,,,,,").arg(field);
        GsaData b;
        b.automatic = true;
        ASSERT_TRUE(ParseGSA('$' + body + '*' + QString::number(NmeaChecksum(body), 16), b));
        EXPECT_EQ(b.fix, text) << field;
        EXPECT_FALSE(b.automatic);
    }
}

TEST(NmeaParser, ShortGsaYieldsWhatItHolds)
{
    GsaData a;
    a.pdop = 9.9;
    a.hdop = 8.8;
    a.satellites[7] = 30;
    ASSERT_TRUE(ParseGSA("$GPGSA,A,2,17,22*37", a));
    EXPECT_TRUE(a.automatic);
    EXPECT_EQ(a.fix, "2D-Fix");
    EXPECT_EQ(a.satellites[1], 17);
    EXPECT_EQ(a.satellites[2], 22);
    EXPECT_FALSE(a.satellites[7]);
    EXPECT_DOUBLE_EQ(a.pdop, 9.9); // not in the sentence: as it was
    EXPECT_DOUBLE_EQ(a.hdop, 8.8);

    ASSERT_TRUE(ParseGSA("$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5*38", a));
    EXPECT_DOUBLE_EQ(a.pdop, 2.5);
    EXPECT_DOUBLE_EQ(a.hdop, 8.8);
}

TEST(NmeaParser, GsvFillsTheCycleTables)
{
    GsvData v;
    ASSERT_TRUE(ParseGSV(kGsv, v));
    EXPECT_EQ(v.messageCount, 2);
    EXPECT_EQ(v.messageNumber, 1);
    EXPECT_EQ(v.satellitesInView, 8);
    EXPECT_EQ(v.prn[1], 1);
    EXPECT_EQ(v.elevation[1], 40);
    EXPECT_EQ(v.azimuth[1], 83);
    EXPECT_EQ(v.snr[1], 46);
    EXPECT_EQ(v.prn[4], 14);
    EXPECT_EQ(v.snr[4], 45); // the last field, before the checksum
    EXPECT_FALSE(v.prn[5]);

    // Message 2 fills slots 5 to 8; a satellite without SNR leaves that entry empty.
    ASSERT_TRUE(ParseGSV("$GPGSV,2,2,08,15,12,050,,17,60,190,33,22,33,250,40,24,05,010,*7A", v));
    EXPECT_EQ(v.messageNumber, 2);
    EXPECT_EQ(v.prn[1], 1);
    EXPECT_EQ(v.prn[5], 15);
    EXPECT_FALSE(v.snr[5]);
    EXPECT_EQ(v.snr[6], 33);
    EXPECT_EQ(v.prn[8], 24);
    EXPECT_FALSE(v.snr[8]);

    // A new cycle empties the tables first.
    ASSERT_TRUE(ParseGSV("$GPGSV,1,1,01,07,10,100,20*4D", v));
    EXPECT_EQ(v.prn[1], 7);
    EXPECT_FALSE(v.prn[5]);
    EXPECT_EQ(v.satellitesInView, 1);
}

TEST(NmeaParser, GsvOfNewerReceiversAndOtherTalkers)
{
    GsvData v;
    // NMEA 4.10 puts a signal number after the groups; it is no satellite.
    ASSERT_TRUE(ParseGSV("$GPGSV,3,1,11,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45,1*61", v));
    EXPECT_EQ(v.satellitesInView, 11);
    EXPECT_EQ(v.prn[4], 14);
    EXPECT_EQ(v.snr[4], 45);
    EXPECT_FALSE(v.prn[5]);

    GsvData g;
    ASSERT_TRUE(ParseGSV("$GLGSV,2,1,07,65,23,040,31,66,55,102,38,72,12,330,,81,40,170,29*6B", g));
    EXPECT_EQ(g.prn[1], 65);
    EXPECT_FALSE(g.snr[3]);
    EXPECT_EQ(g.prn[4], 81);

    // Message 4 has no slot: the counts change, the tables do not.
    const GsvData before = g;
    ASSERT_TRUE(ParseGSV("$GLGSV,4,4,13,88,10,010,20*55", g));
    EXPECT_EQ(g.messageNumber, 4);
    EXPECT_EQ(g.satellitesInView, 13);
    EXPECT_EQ(g.prn, before.prn);
}

TEST(NmeaParser, EmptyFieldsKeepTheirPlaces)
{
    // Runs of empty fields: with a naive split the following fields would slide left.
    RmcData r;
    ASSERT_TRUE(ParseRMC("$GPRMC,235947,V,,,,,,,,,*3F", r));
    EXPECT_EQ(r.time, "23:59:47");
    EXPECT_FALSE(r.valid);
    EXPECT_DOUBLE_EQ(r.latitude, 0.0);
    EXPECT_EQ(r.latHemisphere, " ");
    EXPECT_EQ(r.lonHemisphere, " ");
    EXPECT_DOUBLE_EQ(r.speed, 0.0);

    GgaData g;
    ASSERT_TRUE(ParseGGA("$GPGGA,235947,,,,,0,00,,,M,,M,,*68", g));
    EXPECT_EQ(g.quality, "no fix");
    EXPECT_EQ(g.altitudeUnit, "M");
    EXPECT_EQ(g.separationUnit, "M");

    // The field array after splitting is the one the ",," -> ", ," text gives.
    const QString text = "$GPGSA,A,1,,,,,,,,,,,,,,,*1E";
    const QString replaced = ReplaceText(text, ",,", ", ,");
    EXPECT_EQ(replaced, "$GPGSA,A,1, , , , , , , , , , , , , , ,*1E");
    GsaData a;
    ASSERT_TRUE(ParseGSA(text, a));
    EXPECT_EQ(a.fix, "No-Fix");
    EXPECT_FALSE(a.satellites[1]);

    // An empty time and date: time "" and the date left as it was.
    r.date = "01.01.00";
    ASSERT_TRUE(ParseRMC("$GPRMC,,V,,,,,,,,,*31", r));
    EXPECT_EQ(r.time, "");
    EXPECT_EQ(r.date, "01.01.00");
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
    GsaData a;
    ASSERT_TRUE(ParseGSA("$GNGSA,A,3,05,07,13,15,18,20,23,24,,,,,1.35,0.69,1.16,1*07", a));
    RmcData m;
    ASSERT_TRUE(ParseRMC("$GNRMC,083559.00,A,2254.40800,S,04310.37400,W,0.004,77.52,091202,,,A*4d", m));
    EXPECT_EQ(m.latHemisphere, "S");
}

TEST(NmeaParser, RejectedSentencesChangeNothing)
{
    RmcData r;
    r.time = "keep";
    r.latitude = 1.5;
    r.date = "keep";
    const RmcData before = r;
    auto unchanged = [&] {
        return r.time == before.time && r.latitude == before.latitude && r.date == before.date && !r.valid;
    };
    QString wrongSum = kRmc;
    wrongSum.replace("*6A", "*6B");
    for (const QString& bad : {
             wrongSum, // wrong checksum
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
        EXPECT_TRUE(unchanged()) << bad.toStdString();
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
    struct Case {
        const char* rmc;
        const char* gga;
        double lat, lon;
        const char* locator;
    };
    const Case cases[] = {
        // A GPS-only receiver in Munich (north, east).
        { "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A",
            "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47", 48.1173, 11.51666667,
            "JN58SC" },
        // A multi-system receiver in Rio de Janeiro (south, west).
        { "$GNRMC,083559.00,A,2254.40800,S,04310.37400,W,0.004,77.52,091202,,,A*4D",
            "$GNGGA,083559.00,2254.40800,S,04310.37400,W,1,12,0.82,11.2,M,-5.7,M,,*60", -22.9068, -43.1729,
            "GG87JC" },
        // A chipset with a mode letter, Sydney (south, east).
        { "$GPRMC,002153.000,A,3352.1280,S,15112.5580,E,0.12,271.80,150624,,,D*7A", nullptr, -33.8688,
            151.2093, "QF56OD" },
        // Differential fix in New York (north, west).
        { nullptr, "$GNGGA,163012.00,4042.76800,N,07400.36000,W,2,10,1.02,10.5,M,-34.2,M,,0000*47", 40.7128,
            -74.006, "FN20XR" },
    };
    for (const Case& c : cases) {
        std::optional<GpsPosition> p;
        if (c.rmc) {
            RmcData r;
            ASSERT_TRUE(ParseRMC(c.rmc, r)) << c.rmc;
            p = PositionFrom(r.latitude, r.latHemisphere, r.longitude, r.lonHemisphere);
            ASSERT_TRUE(p) << c.rmc;
            EXPECT_DOUBLE_EQ(p->lat, c.lat) << c.rmc;
            EXPECT_DOUBLE_EQ(p->lon, c.lon) << c.rmc;
        }
        if (c.gga) {
            GgaData g;
            ASSERT_TRUE(ParseGGA(c.gga, g)) << c.gga;
            p = PositionFrom(g.latitude, g.latHemisphere, g.longitude, g.lonHemisphere);
            ASSERT_TRUE(p) << c.gga;
            EXPECT_DOUBLE_EQ(p->lat, c.lat) << c.gga;
            EXPECT_DOUBLE_EQ(p->lon, c.lon) << c.gga;
        }
        EXPECT_EQ(PositionToLocator(*p), c.locator);
    }
    GgaData ny;
    ParseGGA(cases[3].gga, ny);
    EXPECT_EQ(ny.quality, "DGPS fix");
    EXPECT_DOUBLE_EQ(ny.separation, -34.2);
}
