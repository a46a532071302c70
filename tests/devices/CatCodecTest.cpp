#include "devices/rig/CatCodec.h"
#include "devices/rig/LinePace.h"

#include <gtest/gtest.h>

namespace {
QByteArray hex(const char* h)
{
    return QByteArray::fromHex(h);
}
} // namespace

TEST(CatCodec, PackedBcdAddsSixForEveryFullTen)
{
    EXPECT_EQ(Cat::bcdByte(0), 0x00);
    EXPECT_EQ(Cat::bcdByte(9), 0x09);
    EXPECT_EQ(Cat::bcdByte(10), 0x10);
    EXPECT_EQ(Cat::bcdByte(41), 0x41);
    EXPECT_EQ(Cat::bcdByte(90), 0x90);
    EXPECT_EQ(Cat::bcdByte(99), 0x99);
    for (int v = 0; v <= 99; ++v)
        EXPECT_EQ(Cat::bcdByte(v), (v / 10) * 16 + v % 10) << v;
}

TEST(CatCodec, FrequencyCommandCutsTheTextIntoGroupsFromTheRight)
{
    EXPECT_EQ(Cat::frequencyCommand("14410000", 8), hex("1441000001"));
    EXPECT_EQ(Cat::frequencyCommand("43220000", 8), hex("4322000001"));
    EXPECT_EQ(Cat::frequencyCommand("5020000", 7), hex("0502000001"));
    EXPECT_EQ(Cat::frequencyCommand("5020000", 8), hex("0502000001"));
    EXPECT_EQ(Cat::frequencyCommand(" 14410099 ", 8), hex("1441009901"));
    EXPECT_EQ(Cat::frequencyCommand("99999999", 8), hex("9999999901"));
    EXPECT_EQ(Cat::frequencyCommand("00000000", 8), hex("0000000001"));
    // Short or odd texts are sent as they come out, never refused.
    EXPECT_EQ(Cat::frequencyCommand("144100", 8), hex("0014410001"));
    EXPECT_EQ(Cat::frequencyCommand("", 8), hex("0000000001"));
    EXPECT_EQ(Cat::frequencyCommand("abc", 8), hex("0000000001"));
    EXPECT_EQ(Cat::frequencyCommand("1441x000", 8), hex("0000144101"));
}

TEST(CatCodec, TextFrequencyCommandPadsOnlySixCharacterTexts)
{
    EXPECT_EQ(Cat::frequencyTextCommand("14410000"), QByteArray("FA144100000;"));
    EXPECT_EQ(Cat::frequencyTextCommand("144100"), QByteArray("FA144100000;"));
    EXPECT_EQ(Cat::frequencyTextCommand("5010000"), QByteArray("FA50100000;"));
    EXPECT_EQ(Cat::frequencyTextCommand("12345"), QByteArray("FA123450;"));
}

TEST(CatCodec, FixedCommands)
{
    EXPECT_EQ(Cat::ModeCw, hex("0200000007"));
    EXPECT_EQ(Cat::ModeUsb, hex("0100000007"));
    EXPECT_EQ(Cat::PttOn, hex("0000000008"));
    EXPECT_EQ(Cat::PttOff, hex("0000000088"));
    EXPECT_EQ(Cat::TextModeCw, QByteArray("MD03;"));
    EXPECT_EQ(Cat::TextModeUsb, QByteArray("MD02;"));
    EXPECT_EQ(Cat::TextTransmit, QByteArray("TX1;"));
    EXPECT_EQ(Cat::TextReceive, QByteArray("TX0;"));
}

TEST(CatCodec, DisplayStepsAndPresets)
{
    EXPECT_EQ(Cat::megahertzText(14420000), QString("144.2"));
    EXPECT_EQ(Cat::megahertzText(14410001), QString("144.10001"));
    EXPECT_EQ(Cat::megahertzText(5020000), QString("50.2"));
    EXPECT_EQ(Cat::megahertzText(43220000), QString("432.2"));
    EXPECT_EQ(Cat::tuningStep(1), 1);
    EXPECT_EQ(Cat::tuningStep(2), 10);
    EXPECT_EQ(Cat::tuningStep(3), 100);
    EXPECT_EQ(Cat::tuningStep(4), 1000);
    EXPECT_EQ(Cat::bandPreset(1), 5020000);
    EXPECT_EQ(Cat::bandPreset(2), 14420000);
    EXPECT_EQ(Cat::bandPreset(3), 43220000);
    EXPECT_EQ(Cat::digitCount(1), 7);
    EXPECT_EQ(Cat::digitCount(2), 8);
    EXPECT_EQ(Cat::digitCount(3), 8);
}

TEST(LinePace, TimeOnTheLineFollowsTheSettings)
{
    EXPECT_EQ(LinePace::microseconds("9600,n,8,1", 96), 100000); // 10 bits a byte
    EXPECT_EQ(LinePace::microseconds("4800,e,7,2", 48), 110000); // 11 bits
    EXPECT_EQ(LinePace::microseconds("1200,n,8,1.5", 12), 105000); // 10.5 bits
    EXPECT_EQ(LinePace::microseconds("garbage", 96), 100000); // taken as 9600,n,8,1
    EXPECT_EQ(LinePace::microseconds("9600,n,8,1", 0), 0);
}
