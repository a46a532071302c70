// The program's main window, assembled as main() does, serving kestrel-sim's rig and rotator to
// Hamlib's own command-line clients (rigctl and rotctl, NET models 2) on free ports.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "hub/LineServer.h"
#include "hub/StationHub.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"
#include "ui/StationAssembly.h"
#include "ui/form1/Form1.h"
#include "ui/rig/RigPanel.h"
#include "ui/rig/StationPanels.h"

#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <gtest/gtest.h>

namespace {
struct HubWindow {
    HubWindow()
        : station(prompts)
    {
        ExtensionSettings::setValue(ExtensionKey::DatabaseFile, dir.file("backup.db"));
        for (const QString& key : { ExtensionKey::HubRig, ExtensionKey::HubRotator })
            ExtensionSettings::setValue(key, QStringLiteral("on"));
        ExtensionSettings::setValue(ExtensionKey::HubRigPort, QStringLiteral("0"));
        ExtensionSettings::setValue(ExtensionKey::HubRotatorPort, QStringLiteral("0"));
        form = std::make_unique<Form1>(station, makeQtSerialLink);
        assembly = std::make_unique<StationAssembly>(*form, station);
        form->load();
        form->show();
    }
    QString rigPlace() const
    {
        return QStringLiteral("127.0.0.1:%1").arg(assembly->hub().rigServer()->port());
    }
    QString rotatorPlace() const
    {
        return QStringLiteral("127.0.0.1:%1").arg(assembly->hub().rotatorServer()->port());
    }
    QString text(const char* name) const { return form->findChild<QLabel*>(QLatin1String(name))->text(); }

    TempDir dir;
    SimProcess sim { dir.path(), { "--rotator-rate", "60" } };
    RecordingPrompts prompts;
    Station station;
    std::unique_ptr<Form1> form;
    std::unique_ptr<StationAssembly> assembly;
};

// Runs a Hamlib client to its end while the window goes on working; its standard output.
QString runClient(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(program, args);
    EXPECT_TRUE(p.waitForStarted(5000)) << program.toStdString();
    EXPECT_TRUE(QTest::qWaitFor([&] { return p.state() == QProcess::NotRunning; }, 20000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    return QString::fromLocal8Bit(p.readAllStandardOutput());
}
} // namespace

TEST(HubSim, RigctlMovesTheSimulatedRigAndPrintsWhatWasSet)
{
    HubWindow w;
    ASSERT_TRUE(w.sim.ready());
    ASSERT_NE(w.assembly->hub().rigServer(), nullptr) << w.prompts.shown.join(" | ").toStdString();
    EXPECT_EQ(runClient(QStringLiteral("rigctl"),
                  { "-m", "2", "-r", w.rigPlace(), "F", "144300000", "f", "M", "USB", "2400", "m", "T", "1",
                      "t", "T", "0" }),
        "144300000\nUSB\n2400\n1\n");
    EXPECT_TRUE(w.sim.waitFor("rig", "frequency=144300000 mode=USB tx=0")
                    .startsWith(QStringLiteral("frequency=144300000 mode=USB tx=0")));
    EXPECT_EQ(w.text("formatFre"), "144.3");

    // PTT on the simulated rig, and the window's TxRx follows.
    runClient(QStringLiteral("rigctl"), { "-m", "2", "-r", w.rigPlace(), "T", "1" });
    EXPECT_TRUE(w.sim.waitFor("rig", "tx=1").contains(QStringLiteral("tx=1")));
    EXPECT_TRUE(w.form->findChild<QWidget*>(QStringLiteral("TxRx"))->property("checked").toBool());
    runClient(QStringLiteral("rigctl"), { "-m", "2", "-r", w.rigPlace(), "M", "CW", "500", "T", "0" });
    EXPECT_TRUE(w.sim.waitFor("rig", "mode=CW tx=0").contains(QStringLiteral("mode=CW tx=0")));
    // Without a sound card the only message is the missing input.
    w.prompts.shown.removeAll(QStringLiteral("No sound input device is available."));
    EXPECT_TRUE(w.prompts.shown.isEmpty()) << w.prompts.shown.join(" | ").toStdString();
}

TEST(HubSim, TwoRigctlClientsAtOnceSeeEachOthersSets)
{
    HubWindow w;
    ASSERT_TRUE(w.sim.ready());
    QProcess a;
    QProcess b;
    for (QProcess* p : { &a, &b })
        p->start(QStringLiteral("rigctl"), { "-m", "2", "-r", w.rigPlace() });
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.assembly->hub().rigServer()->clientCount() == 2; }, 10000));

    auto answer = [&](QProcess& p, const char* command, const QString& expected) {
        p.write(command);
        QString out;
        (void)QTest::qWaitFor(
            [&] {
                out += QString::fromLocal8Bit(p.readAllStandardOutput());
                return out.contains(expected);
            },
            5000);
        return out;
    };
    // Hamlib's client keeps what it read for a moment: asked again until the news is in, as a
    // polling program asks.
    auto poll = [&](QProcess& p, const QString& expected) {
        QString out;
        for (int i = 0; i < 20 && !out.contains(expected); ++i) {
            QTest::qWait(250);
            out += answer(p, "f\n", QStringLiteral("Rig command:"));
        }
        return out;
    };
    answer(a, "F 432100000\n", QStringLiteral("Rig command:"));
    EXPECT_TRUE(
        poll(b, QStringLiteral("Frequency: 432100000")).contains(QStringLiteral("Frequency: 432100000")));
    answer(b, "F 144050000\n", QStringLiteral("Rig command:"));
    EXPECT_TRUE(
        poll(a, QStringLiteral("Frequency: 144050000")).contains(QStringLiteral("Frequency: 144050000")));
    EXPECT_TRUE(
        w.sim.waitFor("rig", "frequency=144050000").startsWith(QStringLiteral("frequency=144050000")));

    // The window's own controls keep working beside them (the first band click after start-up
    // keeps the frequency, the second takes the band's).
    w.assembly->panels().rig().clickBandV(3);
    w.assembly->panels().rig().clickBandV(3);
    EXPECT_TRUE(
        poll(a, QStringLiteral("Frequency: 432200000")).contains(QStringLiteral("Frequency: 432200000")));

    for (QProcess* p : { &a, &b }) {
        p->write("q\n");
        p->closeWriteChannel();
        EXPECT_TRUE(QTest::qWaitFor([&] { return p->state() == QProcess::NotRunning; }, 10000));
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return w.assembly->hub().rigServer()->clientCount() == 0; }, 5000));
}

TEST(HubSim, RotctlTurnsTheSimulatedRotatorAndReadsTheHeadingBack)
{
    HubWindow w;
    ASSERT_TRUE(w.sim.ready());
    ASSERT_NE(w.assembly->hub().rotatorServer(), nullptr);
    EXPECT_EQ(
        runClient(QStringLiteral("rotctl"), { "-m", "2", "-r", w.rotatorPlace(), "P", "123", "10" }), "");
    EXPECT_TRUE(w.sim.waitFor("rotator", "heading=123.0", 10000).startsWith(QStringLiteral("heading=123.0")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return w.text("Label1") == u"123"; }, 3000));
    const QStringList pos
        = runClient(QStringLiteral("rotctl"), { "-m", "2", "-r", w.rotatorPlace(), "p" }).split(u'\n');
    ASSERT_GE(pos.size(), 2);
    EXPECT_EQ(pos[0], "123.00");
    EXPECT_EQ(w.form->findChild<QLineEdit*>(QStringLiteral("Text160"))->text(), "123");
}
