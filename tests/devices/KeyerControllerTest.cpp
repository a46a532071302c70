// The keyer with the rig: transmit switched on before the first element and off after the
// last gap, by push-to-talk or by the text dialect after its wait.
#include "devices/keyer/KeyerController.h"
#include "StationRig.h"
#include "devices/rig/RigController.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace std::chrono;
using Clock = steady_clock;

namespace {
struct KeyerRig : StationRig {
    std::unique_ptr<RigController> rig;
    std::unique_ptr<KeyerController> keyer;

    KeyerRig(bool text)
        : StationRig("Com1", text)
    {
        open(1);
        open(2);
        rig = std::make_unique<RigController>(station, ports);
        keyer = std::make_unique<KeyerController>(station, *rig, lines);
        keyer->setSpeedIndex(3);
    }

    // Collects Com1 until sending has ended, noting when each command arrived.
    std::vector<std::pair<QByteArray, Clock::time_point>> run(const QString& text, int timeoutMs)
    {
        std::vector<std::pair<QByteArray, Clock::time_point>> got;
        keyer->cmdSend_Click(text);
        EXPECT_TRUE(keyer->isSending());
        (void)QTest::qWaitFor(
            [&] {
                const QByteArray b = pty[0].readAvailable();
                if (!b.isEmpty())
                    got.push_back({ b, Clock::now() });
                return !keyer->isSending();
            },
            timeoutMs);
        const QByteArray rest = received(1, 0, 50);
        if (!rest.isEmpty())
            got.push_back({ rest, Clock::now() });
        return got;
    }
};

double ms(Clock::time_point a, Clock::time_point b)
{
    return duration<double, std::milli>(b - a).count();
}
} // namespace

// The bytes themselves are checked through the keyer window; here their timing.
TEST(KeyerController, PushToTalkAroundTheKeyingForTheBinaryRig)
{
    KeyerRig k(false);
    std::vector<std::pair<bool, Clock::time_point>> ptt;
    QObject::connect(k.rig.get(), &RigController::pttChanged, [&](bool on) {
        ptt.push_back({ on, Clock::now() });
    });
    k.run("e", 3000);
    const auto edges = k.key->edges();
    ASSERT_EQ(edges.size(), 2u);
    ASSERT_EQ(ptt.size(), 2u);
    EXPECT_TRUE(ptt[0].first);
    EXPECT_LE(ptt[0].second, edges[0].at);
    // After the last gap: "e" at 50 ms is 50 down, then 50 + 100 + 100 ms.
    EXPECT_GE(ms(edges[1].at, ptt[1].second), 245.0);
    EXPECT_FALSE(k.keyer->transmitState());
}

TEST(KeyerController, TextDialectSwitchesWithTx1AndTx0AfterTheWait)
{
    KeyerRig k(true);
    ASSERT_EQ(k.rig->transmitWaitMs(), 1000);
    const auto clicked = Clock::now();
    const auto got = k.run("e", 5000);
    ASSERT_EQ(got.size(), 2u);
    EXPECT_EQ(got[0].first, QByteArray("TX1;"));
    EXPECT_EQ(got[1].first, QByteArray("TX0;"));
    const auto edges = k.key->edges();
    ASSERT_EQ(edges.size(), 2u);
    EXPECT_GE(ms(clicked, got[0].second), 1000.0);
    EXPECT_LE(got[0].second, edges[0].at + milliseconds(5)); // on before the first element
    EXPECT_GE(ms(edges[1].at, got[1].second), 250.0 + 1000.0);
}

TEST(KeyerController, AClickWhileSendingIsIgnoredAndRxClearsTheTransmitState)
{
    KeyerRig k(false);
    k.keyer->cmdSend_Click("e");
    k.keyer->cmdSend_Click("tttt"); // ignored: already sending
    EXPECT_TRUE(k.keyer->transmitState());
    k.keyer->cmdRX_Click();
    EXPECT_FALSE(k.keyer->transmitState());
    QSignalSpy sending(k.keyer.get(), &KeyerController::sendingChanged);
    ASSERT_TRUE(sending.wait(2000));
    EXPECT_EQ(k.key->edges().size(), 2u);
}

TEST(KeyerController, StopNowLiftsTheKeyAndSwitchesTransmitOffWithoutTheWait)
{
    KeyerRig k(true);
    k.keyer->cmdSend_Click("ttttt");
    EXPECT_EQ(k.received(1, 4, 0), QByteArray("TX1;"));
    QTest::qWait(300);
    k.keyer->stopNow();
    EXPECT_FALSE(k.key->state());
    EXPECT_FALSE(k.keyer->isSending());
    EXPECT_EQ(k.received(1, 4, 0), QByteArray("TX0;"));
    EXPECT_EQ(k.received(1, 0, 1500), QByteArray()); // nothing more comes

    KeyerRig b(false);
    b.keyer->cmdSend_Click("ttttt");
    QTest::qWait(200);
    b.keyer->stopNow();
    EXPECT_EQ(b.received(1, 10).toHex(' '), QByteArray("00 00 00 00 08 00 00 00 00 88"));
}
