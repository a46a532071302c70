// The main window against kestrel-sim: the heading shown follows the simulated rotator, and the
// sensor box's elevation and temperature arrive, all through the simulator's pseudo-terminals.
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"
#include "ui/form1/Compass.h"
#include "ui/form1/Form1.h"

#include <QLabel>
#include <QStatusBar>
#include <QTest>
#include <gtest/gtest.h>

TEST(Form1Sim, HeadingFollowsTheSimulatedRotator)
{
    TempDir dir;
    SimProcess sim(dir.path(), { "--rotator-rate", "30" });
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();

    RecordingPrompts prompts;
    Station station(prompts);
    Form1 form(station, makeQtSerialLink);
    form.load();
    for (int n = 1; n <= 4; ++n)
        ASSERT_TRUE(form.isPortOpen(n)) << n << " " << form.statusBar()->currentMessage().toStdString();
    const auto label = [&](const char* name) { return form.findChild<QLabel*>(QLatin1String(name))->text(); };
    QTRY_COMPARE_WITH_TIMEOUT(label("Label1"), QStringLiteral("000"), 3000);

    // turn as the rotator panel does, then watch the read-back climb to the target
    ASSERT_EQ(form.ports().com(4).write(QByteArray("AP1075\r;")), 8);
    QStringList seen;
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
            if (seen.isEmpty() || seen.last() != label("Label1"))
                seen << label("Label1");
            return seen.last() == QLatin1String("075");
        }(),
        8000);
    for (qsizetype i = 1; i < seen.size(); ++i)
        EXPECT_GT(seen[i].toInt(), seen[i - 1].toInt()) << seen.join(u' ').toStdString();
    EXPECT_GE(seen.size(), 4) << seen.join(u' ').toStdString(); // it moved through the way, not in one jump
    EXPECT_EQ(form.findChild<Compass*>(QStringLiteral("Picture1"))->heading(), 75);
    EXPECT_TRUE(sim.status("rotator").startsWith(QStringLiteral("heading=75.0 ")));
    EXPECT_TRUE(label("VCX").startsWith(QStringLiteral("Az: 075     Ele: Ele = ")));

    // the sensor box: elevation between 0.3 and 1.2, temperature around 18
    const QString ele = label("Label30");
    ASSERT_TRUE(ele.startsWith(QStringLiteral("Ele = "))) << ele.toStdString();
    EXPECT_GE(ele.mid(6).toDouble(), 0.3);
    EXPECT_LE(ele.mid(6).toDouble(), 1.2);
    const QString temp = label("Label31");
    ASSERT_TRUE(temp.startsWith(QStringLiteral("Temp = "))) << temp.toStdString();
    EXPECT_NEAR(temp.mid(7).toInt(), 18, 3);
    EXPECT_TRUE(prompts.shown.isEmpty());
    form.close();
}
