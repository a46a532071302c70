// Frequency sets from the hub share the line with the window: a burst goes out as the first set
// and then the last, never queued up, and the display follows every set at once.
#include "devices/rig/CatCodec.h"
#include "tests/hub/HubStation.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

TEST(HubRig, ABurstOfSetsIsCoalescedToTheFirstAndTheLast)
{
    HubStation s;
    QSignalSpy display(&s.rig, &RigController::frequencyDisplayChanged);
    for (int i = 0; i < 50; ++i)
        ASSERT_EQ(s.hubRig.setFrequencyHz(144000000 + i * 100), 0);
    EXPECT_EQ(display.size(), 50);
    EXPECT_EQ(display.last().at(0).toString(), "144.0049");
    EXPECT_EQ(s.hubRig.frequencyHz(), 144004900);
    EXPECT_EQ(s.hubRig.sent(), 1);
    EXPECT_EQ(s.hubRig.coalesced(), 48);

    ASSERT_TRUE(QTest::qWaitFor([&] { return s.hubRig.sent() == 2; }, 2000));
    const QByteArray expected = Cat::frequencyCommand(QStringLiteral("14400000"), 8)
        + Cat::frequencyCommand(QStringLiteral("14400490"), 8);
    EXPECT_EQ(s.received(1, expected.size(), 100), expected);
    EXPECT_EQ(s.received(2, 16, 10), QByteArray("1440000014400490"));
}

TEST(HubRig, ASetWaitsForTheWindowsOwnBytes)
{
    HubStation s;
    // 9600 baud: the 5-byte command is still on its way for a few milliseconds.
    ASSERT_TRUE(s.rig.OptFT847_Click(4));
    s.hubRig.setFrequencyHz(432100000);
    EXPECT_EQ(s.hubRig.sent(), s.ports.com(1).bytesToWrite() > 0 ? 0 : 1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return s.hubRig.sent() == 1; }, 2000));
    const QByteArray expected = Cat::ModeCw + Cat::frequencyCommand(QStringLiteral("43210000"), 8);
    EXPECT_EQ(s.received(1, expected.size()), expected);
}

TEST(HubRig, AFrequencyTheRigCannotTakeIsTheClientsErrorAndNothingIsSent)
{
    HubStation s;
    QSignalSpy display(&s.rig, &RigController::frequencyDisplayChanged);
    EXPECT_EQ(s.hubRig.setFrequencyHz(1296200000), -1); // no transverter in Kestrel.ini
    EXPECT_EQ(s.hubRig.sent(), 0);
    EXPECT_EQ(display.size(), 0);
    EXPECT_TRUE(s.prompts.shown.isEmpty());
    EXPECT_EQ(s.received(1, 1, 100), QByteArray());
}
