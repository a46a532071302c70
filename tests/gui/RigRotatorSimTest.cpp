// End to end with kestrel-sim: the main window with the rig, rotator and keyer panels on the
// simulated station's pseudo-terminals, checked against the state the simulator reports.
#include "core/Station.h"
#include "devices/lines/OutputLines.h"
#include "devices/link/QtSerialLink.h"
#include "devices/rig/RigController.h"
#include "devices/rotator/RotatorController.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"
#include "ui/form1/Form1.h"
#include "ui/rig/RigPanel.h"
#include "ui/rig/StationPanels.h"
#include "ui/widgets/OptionGroup.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// The main window with its station panels, on the Kestrel.txt kestrel-sim wrote.
struct Station_ {
    TempDir dir;
    SimProcess sim { dir.path(), { "--rotator-rate", "90" } };
    RecordingPrompts prompts;
    Station station { prompts };
    std::unique_ptr<Form1> form;
    StationPanels* panels = nullptr;

    Station_()
    {
        form = std::make_unique<Form1>(station, makeQtSerialLink);
        panels = new StationPanels(*form, std::make_unique<OutputLines>());
        form->load();
        form->show();
    }
    ~Station_() { form->close(); }
    template <typename T> T* child(const char* name)
    {
        return form->findChild<T*>(QString::fromLatin1(name));
    }
};

} // namespace

TEST(RigRotatorSim, BandClicksAndHeldQrgUpLeaveTheRigWhereTheBytesSaid)
{
    Station_ s;
    ASSERT_TRUE(s.sim.ready());
    ASSERT_TRUE(s.form->isPortOpen(1));
    s.child<OptionGroup>("OptBandV")->button(3)->click(); // first click: keeps 144.000
    s.child<OptionGroup>("OptBandV")->button(2)->click(); // preset 144.200
    EXPECT_TRUE(s.sim.waitFor("rig", "frequency=144200000 ").startsWith("frequency=144200000 "));

    s.child<OptionGroup>("OptQRG")->button(3)->click(); // "10kHz": 100 counter units, 1 kHz
    RigController& rig = s.panels->rig().controller();
    QSignalSpy ended(&rig, &RigController::tuningEnded);
    auto* up = s.child<QPushButton>("FreqUp");
    QTest::mousePress(up, Qt::LeftButton);
    QTest::qWait(300);
    QTest::mouseRelease(up, Qt::LeftButton);
    ASSERT_TRUE(ended.count() == 1 || ended.wait(2000));
    ASSERT_GE(rig.passes(), 2);

    const qint64 sent = rig.counter() - 100; // the rig is one step behind the display
    EXPECT_EQ(rig.counter(), 14420000 + 100 * rig.passes());
    EXPECT_EQ(s.child<QLabel>("formatFre")->text(), QString::number(rig.counter() / 100000.0, 'g', 15));
    const QString want = QStringLiteral("frequency=%1 ").arg(sent * 10);
    const QString state = s.sim.waitFor("rig", want);
    EXPECT_TRUE(state.startsWith(want)) << state.toStdString() << " want " << want.toStdString();
    EXPECT_TRUE(state.contains(QStringLiteral("refused=0"))) << state.toStdString();
    // Com2 got the same texts one after the other; the simulator takes the run of digits whole.
    const QString plain = s.sim.waitFor("rig2", QString::number(sent), 3000);
    EXPECT_TRUE(plain.endsWith(QString::number(sent))) << plain.toStdString();
}

TEST(RigRotatorSim, LocatorEnterEnterTurnsTheRotatorToTheBearing)
{
    Station_ s;
    ASSERT_TRUE(s.sim.ready());
    ASSERT_TRUE(QTest::qWaitForWindowActive(s.form.get()));
    auto* locator = s.child<QLineEdit>("Locator");
    locator->setFocus();
    QTest::keyClicks(locator, "JO31");
    QTest::keyClick(locator, Qt::Key_Return);
    auto* text160 = s.child<QLineEdit>("Text160");
    ASSERT_TRUE(text160->hasFocus());
    const int degrees = text160->text().toInt();
    EXPECT_GT(degrees, 300); // JO31 lies north-west of JN48
    EXPECT_LT(degrees, 340);
    QTest::keyClick(text160, Qt::Key_Return);
    EXPECT_TRUE(locator->hasFocus());

    const QString three = QString::number(degrees).rightJustified(3, QLatin1Char('0'));
    const QString want = QStringLiteral("heading=%1.0 target=%1 motion=stopped").arg(degrees);
    const QString state = s.sim.waitFor("rotator", want, 8000);
    EXPECT_TRUE(state.startsWith(want)) << state.toStdString();
    // and the window's read-back follows
    EXPECT_TRUE(QTest::qWaitFor([&] { return s.child<QLabel>("Label1")->text() == three; }, 2000))
        << s.child<QLabel>("Label1")->text().toStdString();
}
