// The 200 ms tick through real pseudo-terminals: the queries, the read-back, the sensor texts,
// and that bad replies and lost ports change nothing else.
#include "tests/gui/Form1Fixture.h"
#include "ui/form1/Compass.h"

#include <QLabel>
#include <QStatusBar>
#include <gtest/gtest.h>

namespace {

QString text(Form1Fixture& f, const char* name)
{
    return f.child<QLabel>(name)->text();
}

} // namespace

TEST(Form1Tick, EachTickSendsExactlyTheTwoQueries)
{
    Form1Fixture f;
    f.writeConfig();
    f.start();
    f.form->tick();
    f.form->tick();
    EXPECT_EQ(f.rotator.readExactly(8), QByteArray("AI1;AI1;"));
    EXPECT_EQ(f.sensor.readExactly(6), QByteArray("\x7f\x01\x87\x7f\x01\x87", 6));
    // nothing else goes to the rig ports or follows the queries
    EXPECT_EQ(f.rotator.readFor(100) + f.rig1.readAvailable() + f.rig2.readAvailable(), QByteArray());

    // the timer "Timer" ticks every 200 ms
    ASSERT_EQ(f.form->timer().objectName(), QStringLiteral("Timer"));
    f.form->timer().start();
    const QByteArray got = f.rotator.readFor(1100);
    const int ticks = got.count("AI1;");
    EXPECT_EQ(got, QByteArray("AI1;").repeated(ticks));
    EXPECT_TRUE(ticks >= 3 && ticks <= 7) << ticks;
}

TEST(Form1Tick, RepliesFillHeadingElevationTemperatureAndOverlay)
{
    Form1Fixture f;
    f.writeConfig();
    f.start();
    QSignalSpy read(f.form.get(), &Form1::sensorRead);
    ASSERT_TRUE(f.tickWith(sensorReply(750, 21), "123;"));
    EXPECT_EQ(text(f, "Label1"), QStringLiteral("123"));
    EXPECT_EQ(text(f, "Label31"), QStringLiteral("Temp = 21"));
    EXPECT_EQ(text(f, "Label30"), QStringLiteral("Ele = 0.8"));
    EXPECT_EQ(text(f, "VCX"), QStringLiteral("Az: 123     Ele: Ele = 0.8"));
    EXPECT_EQ(f.child<Compass>("Picture1")->heading(), 123);
    ASSERT_EQ(read.count(), 1);
    EXPECT_TRUE(read.at(0).at(0).toDouble() == 0.75 && f.form->elevation() == 0.75);

    // a reply longer than three characters shows its first three; 0.05 rounds to one decimal
    ASSERT_TRUE(f.tickWith(sensorReply(1234, 255), "0071;"));
    EXPECT_EQ(text(f, "Label1"), QStringLiteral("007"));
    EXPECT_EQ(text(f, "Label31"), QStringLiteral("Temp = 255"));
    EXPECT_EQ(text(f, "Label30"), QStringLiteral("Ele = 1.2"));
    EXPECT_EQ(f.child<Compass>("Picture1")->heading(), 7);
}

TEST(Form1Tick, ShortOrGarbledRepliesChangeNothingElse)
{
    Form1Fixture f;
    f.writeConfig();
    f.start();
    ASSERT_TRUE(f.tickWith(sensorReply(500, 19), "200;"));
    ASSERT_EQ(text(f, "Label30"), QStringLiteral("Ele = 0.5"));

    // a sensor frame cut short, and a rotator reply that is no number
    ASSERT_TRUE(f.tickWith(QByteArray::fromHex("7e01870a0b0c"), "?x"));
    EXPECT_EQ(text(f, "Label30"), QStringLiteral("Ele = 0.5"));
    EXPECT_EQ(text(f, "Label31"), QStringLiteral("Temp = 19"));
    EXPECT_EQ(text(f, "Label1"), QStringLiteral("?x"));
    EXPECT_EQ(f.child<Compass>("Picture1")->heading(), 200);
    EXPECT_EQ(f.form->elevation(), 0.5);

    // no reply at all: an empty read-back, the sensor texts stay
    f.rotator.readAvailable();
    f.form->tick();
    EXPECT_EQ(text(f, "Label1"), QString());
    EXPECT_EQ(text(f, "Label31"), QStringLiteral("Temp = 19"));
    EXPECT_TRUE(f.prompts.shown.isEmpty());
}

TEST(Form1Tick, APortThatVanishesLeavesTheOtherPortAndTheTimerRunning)
{
    Form1Fixture f;
    f.writeConfig();
    f.start(true);
    ASSERT_TRUE(f.form->isPortOpen(4));
    f.rotator.closeMaster();
    QTRY_VERIFY_WITH_TIMEOUT(!f.form->isPortOpen(4), 3000);

    EXPECT_EQ(f.child<QLabel>("lblCom4")->property("state").toString(), QStringLiteral("failed"));
    const QString status = f.form->statusBar()->currentMessage();
    EXPECT_TRUE(status.contains(QStringLiteral("Com4")) && status.contains(QStringLiteral("vanished")))
        << status.toStdString();

    // the sensor keeps being asked and read
    f.sensor.readFor(250);
    ASSERT_TRUE(f.sensor.write(sensorReply(900, 17)));
    QTRY_COMPARE_WITH_TIMEOUT(text(f, "Label31"), QStringLiteral("Temp = 17"), 2000);
    EXPECT_TRUE(f.form->timer().isActive());
    EXPECT_GE(f.sensor.readFor(450).count(QByteArray("\x7f\x01\x87", 3)), 1);
    EXPECT_TRUE(f.prompts.shown.isEmpty());
}

TEST(Form1Tick, AClosedRotatorPortIsSkippedAndItsHeadingUnknown)
{
    Form1Fixture f;
    f.writeConfig([](SettingsTable& t) { t.setInt16(Setting::Com4Used, 0); });
    f.start();
    f.child<QLabel>("Label1")->setText(QStringLiteral("042"));
    f.child<Compass>("Picture1")->setHeading(42);
    ASSERT_TRUE(f.tickWith(sensorReply(300, 5)));
    EXPECT_EQ(text(f, "Label1"), QStringLiteral("---"));
    EXPECT_EQ(f.child<Compass>("Picture1")->heading(), std::nullopt);
    EXPECT_EQ(text(f, "VCX"), QStringLiteral("Az: ---     Ele: Ele = 0.3"));
    EXPECT_EQ(text(f, "Label31"), QStringLiteral("Temp = 5"));
    EXPECT_EQ(f.rotator.readFor(100), QByteArray());
    EXPECT_EQ(f.child<QLabel>("lblCom4")->property("state").toString(), QStringLiteral("off"));
}
