#include "StationRig.h"
#include "core/ExtensionSettings.h"
#include "devices/rig/RigController.h"
#include "sim/devices/SimRig.h"
#include "tests/support/TempDir.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

TEST(TransverterTable, ReadsKestrelIniLinesAndNamesTheOnesItCannot)
{
    TempDir dir;
    dir.write("Kestrel.ini",
        "[transverters]\n1296=144\n10368=432,4\n2320.1=28.5\n47088=\nabc=144\n24048=144,x\n3400=999\n");
    QStringList problems;
    const TransverterTable table = TransverterTable::fromSettings(&problems);
    EXPECT_EQ(table.bands(),
        (QList<Transverter> { { 129600000, 14400000, 200000 }, { 232010000, 2850000, 200000 },
            { 1036800000, 43200000, 400000 } }));
    ASSERT_EQ(problems.size(), 4) << problems.join('\n').toStdString();
    EXPECT_EQ(problems.filter("47088=:").size(), 1);
    EXPECT_EQ(problems.filter("abc=144:").size(), 1);
    EXPECT_EQ(problems.filter("24048=144,x:").size(), 1);
    EXPECT_EQ(problems.filter("3400=999: the IF is beyond the rig").size(), 1);
}

TEST(TransverterTable, SendsCoveredFrequenciesToTheIfAndRefusesWhatNothingTakes)
{
    const TransverterTable table({ { 129600000, 14400000, 200000 }, { 1036800000, 43200000, 400000 } });
    const struct {
        qint64 station;
        std::optional<qint64> rig;
    } cases[] = {
        { 129620000, 14420000 }, // 1296.2 on 144.2
        { 129600000, 14400000 },
        { 129799999, 14599999 }, // the band's last 10 Hz
        { 129800000, std::nullopt }, // above the 2 MHz band and beyond the rig
        { 1036810000, 43210000 },
        { 14420000, 14420000 }, // the rig takes 144.2 itself
        { 99999999, 99999999 },
        { 100000000, std::nullopt }, // 1000 MHz: nine digits no longer fit the command
        { 0, 0 },
    };
    for (const auto& c : cases)
        EXPECT_EQ(table.rigFrequency(c.station), c.rig) << c.station;
    EXPECT_EQ(TransverterTable().rigFrequency(129620000), std::nullopt);
}

namespace {
// The simulated FT-847 behind Com1, fed with what Kestrel wrote there.
struct TransverterStation : StationRig {
    TempDir dir;
    SimRig sim;
    std::unique_ptr<RigController> rig;

    explicit TransverterStation(const QByteArray& ini)
    {
        dir.write("Kestrel.ini", ini);
        rig = std::make_unique<RigController>(station, ports);
        open(1);
        open(2);
    }
    void feedSim(int expected) { sim.receive(received(1, expected)); }
};
} // namespace

TEST(RigController, TransverterPutsTheRigOnTheIfAndTheDisplayOnRf)
{
    TransverterStation s("[transverters]\n1296=144\n");
    QSignalSpy display(s.rig.get(), &RigController::frequencyDisplayChanged);
    ASSERT_TRUE(s.rig->tuneTo(129620000));
    s.feedSim(5);
    EXPECT_EQ(s.sim.frequencyHz(), 144200000);
    EXPECT_EQ(s.received(2, 8), QByteArray("14420000"));
    EXPECT_EQ(s.rig->displayText(), QString("1296.2"));
    ASSERT_EQ(display.size(), 1);
    EXPECT_EQ(display[0][0].toString(), QString("1296.2"));
    EXPECT_TRUE(s.prompts.shown.isEmpty()) << s.prompts.shown.join('\n').toStdString();
}

TEST(RigController, EveryTuningPathGoesThroughTheTransverterTable)
{
    // a band click after a beacon set the counter, and a pass of hold-to-tune
    TransverterStation s("[transverters]\n1296=144\n");
    s.rig->setCounter(129620000);
    s.rig->setPresetFlag(false);
    s.rig->OptBandV_Click(2);
    s.feedSim(5);
    EXPECT_EQ(s.sim.frequencyHz(), 144200000);
    s.rig->setStepOption(4); // 10 kHz a pass
    s.rig->startTuning(+1);
    s.rig->stopTuning();
    QTRY_VERIFY(!s.rig->isTuning());
    s.feedSim(5);
    EXPECT_EQ(s.sim.frequencyHz(), 144200000); // deliberate: the pass sends the text before its step
    EXPECT_EQ(s.rig->displayText(), QString("1296.21"));
    EXPECT_TRUE(s.prompts.shown.isEmpty()) << s.prompts.shown.join('\n').toStdString();
}

TEST(RigController, FrequencyNoRigOrTransverterTakesIsRefusedAndNothingSent)
{
    TransverterStation s("");
    s.rig->setCounter(14420000);
    QSignalSpy refused(s.rig.get(), &RigController::frequencyRefused);
    EXPECT_FALSE(s.rig->tuneTo(129620000));
    const QString why
        = "1296.2 MHz is beyond the rig and no transverter in Kestrel.ini [transverters] covers "
          "it; nothing was sent.";
    EXPECT_EQ(s.prompts.shown, QStringList { why });
    EXPECT_EQ(refused.size(), 1);
    EXPECT_EQ(s.rig->displayText(), QString("144.2")); // the display stays where the rig is
    EXPECT_TRUE(s.pty[0].readFor(100).isEmpty());
    EXPECT_TRUE(s.pty[1].readFor(10).isEmpty());

    // the frequency sender itself refuses too, whoever calls it
    EXPECT_FALSE(s.rig->SendFreq("129620000"));
    EXPECT_EQ(s.prompts.shown.size(), 2);
    EXPECT_TRUE(s.pty[0].readFor(50).isEmpty());
}
