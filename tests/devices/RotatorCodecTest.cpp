#include "devices/rotator/RotatorCodec.h"

#include <gtest/gtest.h>

TEST(RotatorCodec, Format000PadsWholeNumbersAndLeavesOtherTexts)
{
    EXPECT_EQ(Rotator::format000("45"), QString("045"));
    EXPECT_EQ(Rotator::format000("7"), QString("007"));
    EXPECT_EQ(Rotator::format000("000"), QString("000"));
    EXPECT_EQ(Rotator::format000("359"), QString("359"));
    EXPECT_EQ(Rotator::format000("1234"), QString("1234"));
    EXPECT_EQ(Rotator::format000(" 45 "), QString("045"));
    EXPECT_EQ(Rotator::format000("45.5"), QString("046"));
    EXPECT_EQ(Rotator::format000("45.4"), QString("045"));
    EXPECT_EQ(Rotator::format000("-5"), QString("-005"));
    EXPECT_EQ(Rotator::format000("abc"), QString("abc"));
    EXPECT_EQ(Rotator::format000(""), QString(""));
}

TEST(RotatorCodec, CommandBytes)
{
    EXPECT_EQ(Rotator::setHeadingCommand("7"), QByteArray("AP1007\r;"));
    EXPECT_EQ(Rotator::setHeadingCommand("000"), QByteArray("AP1000\r;"));
    EXPECT_EQ(Rotator::setHeadingCommand("245"), QByteArray("AP1245\r;"));
    EXPECT_EQ(Rotator::secondSetValueCommand("30"), QByteArray("AW1030;"));
    EXPECT_EQ(Rotator::secondSetValueCommand(""), QByteArray("AW1;"));
    EXPECT_EQ(Rotator::TurnLeft, QByteArray("AA;"));
    EXPECT_EQ(Rotator::TurnRight, QByteArray("AB;"));
    EXPECT_EQ(Rotator::Stop, QByteArray("ST;"));
    EXPECT_EQ(Rotator::Query, QByteArray("AI1;"));
}

TEST(RotatorCodec, ReadBackIsTheFirstThreeCharacters)
{
    EXPECT_EQ(Rotator::readBack("245;AI1;"), QString("245"));
    EXPECT_EQ(Rotator::readBack("24"), QString("24"));
    EXPECT_EQ(Rotator::readBack(""), QString(""));
}

TEST(RotatorCodec, AutomaticElevationKeepsTheBandFrom04To10)
{
    using P = Rotator::Pulse;
    EXPECT_EQ(Rotator::autoElevation(0.3), P::Up);
    EXPECT_EQ(Rotator::autoElevation(0.0), P::Up);
    EXPECT_EQ(Rotator::autoElevation(-2.0), P::Up);
    EXPECT_EQ(Rotator::autoElevation(0.4), P::None);
    EXPECT_EQ(Rotator::autoElevation(0.7), P::None);
    EXPECT_EQ(Rotator::autoElevation(1.0), P::None);
    EXPECT_EQ(Rotator::autoElevation(1.1), P::Down);
    EXPECT_EQ(Rotator::autoElevation(12.5), P::Down);
    // Taken as shown with one decimal.
    EXPECT_EQ(Rotator::autoElevation(0.38), P::None);
    EXPECT_EQ(Rotator::autoElevation(0.34), P::Up);
    EXPECT_EQ(Rotator::autoElevation(1.04), P::None);
    EXPECT_EQ(Rotator::autoElevation(1.05), P::Down);
}

TEST(RotatorCodec, AutoButtonCaptionAndColour)
{
    EXPECT_EQ(Rotator::autoCaption(true), QString("Ele Auto"));
    EXPECT_EQ(Rotator::autoCaption(false), QString("Ele manu"));
    EXPECT_EQ(Rotator::autoColour(true), 65280);
    EXPECT_EQ(Rotator::autoColour(false), 65535);
}
