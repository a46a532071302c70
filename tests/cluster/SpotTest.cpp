#include "cluster/Spot.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <ostream>

void PrintTo(const Spot& s, std::ostream* os)
{
    *os << QStringList({ s.time, s.frequency, s.call, s.spotter, s.comment, s.band, s.locator })
               .join(" | ")
               .toStdString();
}

TEST(SpotParser, RealFormatLines)
{
    // Expected: time, frequency, call, spotter, comment, band, locator.
    const std::pair<QString, Spot> cases[] = {
        { "DX de W3LPL:     14025.0  JA1ABC       CQ CQ                          1234Z",
            { "1234Z", "14025.0", 0, "JA1ABC", "W3LPL", "CQ CQ", "20m", "" } },
        { "DX de OK1XYZ-#:  144174.0 SP9ABC       JO90KA<TR>JO70FD               1235Z JO70",
            { "1235Z", "144174.0", 0, "SP9ABC", "OK1XYZ-#", "JO90KA<TR>JO70FD", "2m", "JO70" } },
        { "DX de PA0ABC-2: 10368100.0  DB0JK  beacon via rainscatter <RS> JO31  1102Z",
            { "1102Z", "10368100.0", 0, "DB0JK", "PA0ABC-2", "beacon via rainscatter <RS> JO31", "3cm",
                "" } },
        // Odd spacing, tabs and lower case.
        { "DX de  ON4KST:14025.0 k1a  cq 1200Z",
            { "1200Z", "14025.0", 0, "K1A", "ON4KST", "cq", "20m", "" } },
        { "dx de w1aw:\t7030.0\tk2abc\ttest   with   gaps\t0001z",
            { "0001Z", "7030.0", 0, "K2ABC", "W1AW", "test   with   gaps", "40m", "" } },
        { "   DX de K1TTT:      3503.5  ZL2IFB    1830Z   ",
            { "1830Z", "3503.5", 0, "ZL2IFB", "K1TTT", "", "80m", "" } },
        // A long comment running into the time; band edges.
        { "DX de SM7ABC:    144300.0  OH1XYZ   a very long comment that goes on and on past thirty "
          "characters1345Z",
            { "1345Z", "144300.0", 0, "OH1XYZ", "SM7ABC",
                "a very long comment that goes on and on past thirty characters", "2m", "" } },
        { "DX de F5ABC: 21074.0 EA8XYZ " + QString(300, 'c') + " 0815Z",
            { "0815Z", "21074.0", 0, "EA8XYZ", "F5ABC", QString(300, 'c'), "15m", "" } },
        { "DX de DK1ABC:  14500.0  XX1XX  odd  1000Z",
            { "1000Z", "14500.0", 0, "XX1XX", "DK1ABC", "odd", "", "" } },
        { "DX de DK1ABC:  143999.9  XX1XX  x  1000Z",
            { "1000Z", "143999.9", 0, "XX1XX", "DK1ABC", "x", "", "" } },
        { "DX de DK1ABC:  1840  XX1XX  ft8  1000Z",
            { "1000Z", "1840", 0, "XX1XX", "DK1ABC", "ft8", "160m", "" } },
        { "DX de DK1ABC:  148000.0  XX1XX  x  1000Z",
            { "1000Z", "148000.0", 0, "XX1XX", "DK1ABC", "x", "2m", "" } },
        { "DX de DK1ABC:  122250000  XX1XX  x  1000Z",
            { "1000Z", "122250000", 0, "XX1XX", "DK1ABC", "x", "2.5mm", "" } },
    };
    for (auto [line, expected] : cases) {
        expected.kHz = expected.frequency.toDouble();
        EXPECT_EQ(parseSpotLine(line), expected) << line.toStdString();
    }
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
