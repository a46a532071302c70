#include "cluster/Spot.h"
#include "cluster/BandPlan.h"

#include <gtest/gtest.h>

namespace {

Spot parsed(const char* line)
{
    const auto spot = parseSpotLine(QString::fromLatin1(line));
    EXPECT_TRUE(spot.has_value()) << line;
    return spot.value_or(Spot {});
}

} // namespace

TEST(SpotParser, CommonNodeFormat)
{
    const Spot s = parsed("DX de W3LPL:     14025.0  JA1ABC       CQ CQ                          1234Z");
    EXPECT_EQ(s.spotter, "W3LPL");
    EXPECT_EQ(s.frequency, "14025.0");
    EXPECT_DOUBLE_EQ(s.kHz, 14025.0);
    EXPECT_EQ(s.call, "JA1ABC");
    EXPECT_EQ(s.comment, "CQ CQ");
    EXPECT_EQ(s.time, "1234Z");
    EXPECT_EQ(s.band, "20m");
    EXPECT_EQ(s.locator, "");
}

TEST(SpotParser, VhfAndMicrowaveSpotsWithLocatorsAfterTheTime)
{
    Spot s = parsed("DX de OK1XYZ-#:  144174.0 SP9ABC       JO90KA<TR>JO70FD               1235Z JO70");
    EXPECT_EQ(s.spotter, "OK1XYZ-#");
    EXPECT_EQ(s.call, "SP9ABC");
    EXPECT_EQ(s.comment, "JO90KA<TR>JO70FD");
    EXPECT_EQ(s.time, "1235Z");
    EXPECT_EQ(s.locator, "JO70");
    EXPECT_EQ(s.band, "2m");

    s = parsed("DX de DL1ABC:   1296200.0  OZ7IGY/B    559 QSB                        0912Z JO50");
    EXPECT_EQ(s.call, "OZ7IGY/B");
    EXPECT_EQ(s.band, "23cm");

    s = parsed("DX de PA0ABC-2: 10368100.0  DB0JK  beacon via rainscatter <RS> JO31  1102Z");
    EXPECT_EQ(s.frequency, "10368100.0");
    EXPECT_EQ(s.comment, "beacon via rainscatter <RS> JO31");
    EXPECT_EQ(s.band, "3cm");

    s = parsed("DX de G4ABC:     50110.0  VK4ABC       tnx qso 73                     0300Z IO91");
    EXPECT_EQ(s.comment, "tnx qso 73");
    EXPECT_EQ(s.locator, "IO91");
    EXPECT_EQ(s.band, "6m");
}

TEST(SpotParser, OddSpacingAndCase)
{
    Spot s = parsed("DX de  ON4KST:14025.0 k1a  cq 1200Z");
    EXPECT_EQ(s.spotter, "ON4KST");
    EXPECT_EQ(s.call, "K1A");
    EXPECT_EQ(s.comment, "cq");

    s = parsed("dx de w1aw:\t7030.0\tk2abc\ttest   with   gaps\t0001z");
    EXPECT_EQ(s.spotter, "W1AW");
    EXPECT_EQ(s.call, "K2ABC");
    EXPECT_EQ(s.comment, "test   with   gaps");
    EXPECT_EQ(s.time, "0001Z");
    EXPECT_EQ(s.band, "40m");

    s = parsed("   DX de K1TTT:      3503.5  ZL2IFB    1830Z   ");
    EXPECT_EQ(s.comment, "");
    EXPECT_EQ(s.time, "1830Z");
    EXPECT_EQ(s.band, "80m");

    s = parsed("DX de SV1XYZ:     5357.0  YO9ABC  FT8 -12dB  2359Z");
    EXPECT_EQ(s.band, "60m");
}

TEST(SpotParser, LongCommentsRunningIntoTheTime)
{
    Spot s = parsed("DX de SM7ABC:    144300.0  OH1XYZ   a very long comment that goes on and on past "
                    "thirty characters1345Z");
    EXPECT_EQ(s.comment, "a very long comment that goes on and on past thirty characters");
    EXPECT_EQ(s.time, "1345Z");

    const QString longComment = QString(300, QLatin1Char('c'));
    s = parseSpotLine(QStringLiteral("DX de F5ABC: 21074.0 EA8XYZ ") + longComment + " 0815Z").value();
    EXPECT_EQ(s.comment, longComment);
    EXPECT_EQ(s.band, "15m");
}

TEST(SpotParser, FrequenciesOutsideTheBandsHaveNoBand)
{
    EXPECT_EQ(parsed("DX de DK1ABC:  14500.0  XX1XX  odd  1000Z").band, "");
    EXPECT_EQ(parsed("DX de DK1ABC:  1840  XX1XX  ft8  1000Z").band, "160m");
}

TEST(SpotParser, RejectsWhatIsNoWholeSpot)
{
    const char* lines[] = {
        "",
        "DX de",
        "DX de W3LPL 14025.0 JA1ABC cq 1234Z", // no colon
        "DX de W3LPL:     14025.0  JA1ABC  cq", // no time: cut off mid-line
        "DX de W3LPL:     14025.0  ", // no call
        "DX de W3LPL: abc JA1ABC x 1234Z", // no frequency
        "DX de W3LPL: 0.0 JA1ABC x 1234Z", // frequency zero
        "DX de W3LPL: 14025.0 JA1<ABC> x 1234Z", // odd call
        "DX de W3LPL: 14025.0 JA1ABC x 2560Z", // no valid time
        "DX de W3LPL: 14025.0 JA1ABC x 1234", // time without Z
        "DX de W3LPL: 14025.0 JA1ABC x 12345Z", // digits run into the time
        "To ALL de DL1ABC: hello 1234Z",
        "WWV de W0MU <18>:   SFI=68, A=5, K=1, No Storms -> No Storms",
        "DXde W3LPL: 14025.0 JA1ABC cq 1234Z",
        "DX de W3 LPL: 14025.0 JA1ABC cq 1234Z",
    };
    for (const char* line : lines)
        EXPECT_FALSE(parseSpotLine(QString::fromLatin1(line)).has_value()) << line;
}

TEST(BandPlan, NamesInOrderAndEdgesInside)
{
    const QStringList names = BandPlan::bandNames();
    EXPECT_EQ(names.first(), "160m");
    EXPECT_TRUE(names.contains("70cm"));
    EXPECT_EQ(BandPlan::bandOf(144000), "2m");
    EXPECT_EQ(BandPlan::bandOf(148000), "2m");
    EXPECT_EQ(BandPlan::bandOf(143999.9), "");
    EXPECT_EQ(BandPlan::bandOf(432200), "70cm");
    EXPECT_EQ(BandPlan::bandOf(122250000), "2.5mm");
}
