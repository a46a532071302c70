#include "sim/devices/SimRotator.h"

#include <gtest/gtest.h>

TEST(SimRotator, AnswersItsHeadingInThreeDigits)
{
    SimRotator rotator(4.0, 7.0);
    EXPECT_EQ(rotator.receive("AI1;AI1;"), QByteArray("007;007;"));
    EXPECT_EQ(SimRotator(4.0, 245.4).receive("AI1;"), QByteArray("245;"));
    EXPECT_EQ(SimRotator(4.0, 359.6).receive("AI1;"), QByteArray("000;"));
    EXPECT_EQ(rotator.receive("AI"), QByteArray());
    EXPECT_EQ(rotator.receive("1;"), QByteArray("007;"));
}

TEST(SimRotator, SlewsToTheTargetAtItsRate)
{
    SimRotator rotator(4.0);
    EXPECT_EQ(rotator.receive(QByteArray("AP1045\r;")), QByteArray());
    EXPECT_EQ(rotator.target(), 45);
    EXPECT_EQ(rotator.motion(), SimRotator::Motion::ToTarget);
    for (int i = 0; i < 25; ++i) // five seconds in 200 ms ticks
        rotator.tick(200);
    EXPECT_DOUBLE_EQ(rotator.heading(), 20.0);
    rotator.tick(8000);
    EXPECT_DOUBLE_EQ(rotator.heading(), 45.0); // and stays there
    EXPECT_EQ(rotator.motion(), SimRotator::Motion::Stopped);

    // Back down, the short way being the only way past the end stop at north.
    rotator.receive(QByteArray("AP1007\r;"));
    rotator.tick(2000);
    EXPECT_DOUBLE_EQ(rotator.heading(), 37.0);
    EXPECT_EQ(rotator.receive("AI1;"), QByteArray("037;"));
}

TEST(SimRotator, TurnsLeftAndRightUntilStoppedOrAtTheEndStop)
{
    SimRotator rotator(10.0, 100.0);
    rotator.receive("AA;");
    rotator.tick(1000);
    EXPECT_DOUBLE_EQ(rotator.heading(), 90.0);
    rotator.receive("ST;");
    rotator.tick(1000);
    EXPECT_DOUBLE_EQ(rotator.heading(), 90.0);

    rotator.receive("AB;");
    rotator.tick(500);
    EXPECT_DOUBLE_EQ(rotator.heading(), 95.0);
    rotator.tick(60000);
    EXPECT_DOUBLE_EQ(rotator.heading(), 360.0);
    EXPECT_EQ(rotator.motion(), SimRotator::Motion::Stopped);

    rotator.receive("AA;");
    rotator.tick(60000);
    EXPECT_DOUBLE_EQ(rotator.heading(), 0.0);
    // "ST;" also ends a turn towards a target.
    rotator.receive(QByteArray("AP1090\r;"));
    rotator.tick(1000);
    rotator.receive("ST;");
    rotator.tick(1000);
    EXPECT_DOUBLE_EQ(rotator.heading(), 10.0);
}

TEST(SimRotator, StoresTheAw1ValueAndIgnoresNoise)
{
    SimRotator rotator;
    EXPECT_EQ(rotator.storedValue(), -1);
    rotator.receive("AW1030;");
    EXPECT_EQ(rotator.storedValue(), 30);
    rotator.receive(QByteArray("AP1abc\r;XX;;")); // refused: no target, still stopped (state line)
    rotator.receive(QByteArray(100, 'x')); // no terminator: dropped, the next command still works
    EXPECT_EQ(rotator.receive("AI1;"), QByteArray("000;"));
    EXPECT_EQ(rotator.stateLine(), QStringLiteral("heading=0.0 target=- motion=stopped aw=30 reply=000"));
}
