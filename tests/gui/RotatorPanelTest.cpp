// The rotator panel alone and inside the main window: Enter in the azimuth box, the buttons,
// elevation by hand and by the tick.
#include "ui/rotator/RotatorPanel.h"
#include "devices/lines/OutputLines.h"
#include "devices/lines/RecordingLine.h"
#include "devices/rotator/RotatorController.h"
#include "tests/devices/StationRig.h"
#include "tests/gui/Form1Fixture.h"
#include "ui/rig/BackColour.h"
#include "ui/rig/StationPanels.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {
struct RotatorPanelRig : StationRig {
    QLineEdit locator;
    std::unique_ptr<RotatorPanel> panel;

    RotatorPanelRig()
    {
        open(4);
        panel = std::make_unique<RotatorPanel>(station, ports, lines, nullptr, &locator);
        panel->show();
        locator.show();
    }
    template <typename T> T* child(const char* name)
    {
        return panel->findChild<T*>(QString::fromLatin1(name));
    }
    void enter(const char* box, const QString& text)
    {
        auto* e = child<QLineEdit>(box);
        e->setText(text);
        e->setFocus();
        QTest::keyClick(e, Qt::Key_Return);
    }
};

} // namespace

TEST(RotatorPanel, EnterInText160AndTheButtonsSendTheirCommands)
{
    RotatorPanelRig r;
    const std::pair<const char*, const char*> captions[]
        = { { "AziL", "<- AZI" }, { "AziR", "AZI->" }, { "RotorStop", "Rotor Stop" }, { "eleup", " Ele  up" },
              { "eleDwn", " Ele dwn" }, { "EleAuto", "Ele Auto" } };
    for (const auto& [name, caption] : captions)
        EXPECT_EQ(r.child<QPushButton>(name)->text(), QString(caption)) << name;
    r.enter("Text160", "");
    EXPECT_EQ(r.child<QLineEdit>("Text160")->text(), QString("000"));
    EXPECT_EQ(r.received(4, 8), QByteArray("AP1000\r;"));
    EXPECT_TRUE(r.locator.hasFocus());
    r.enter("Text160", "7");
    EXPECT_EQ(r.received(4, 8), QByteArray("AP1007\r;"));
    r.enter("Text177", "30");
    EXPECT_EQ(r.received(4, 7), QByteArray("AW1030;"));

    for (const auto& [button, command] :
        { std::pair { "AziL", "AA;" }, { "AziR", "AB;" }, { "RotorStop", "ST;" } }) {
        r.child<QPushButton>(button)->click();
        EXPECT_EQ(r.received(4, 3), QByteArray(command)) << button;
    }
    EXPECT_EQ(BackColour::of(r.child<QPushButton>("RotorStop")), 255);
}

TEST(RotatorPanel, HoldingAnElevationButtonSwitchesAutomaticOff)
{
    RotatorPanelRig r;
    auto* autoButton = r.child<QPushButton>("EleAuto");
    autoButton->click();
    QTest::mousePress(r.child<QPushButton>("eleup"), Qt::LeftButton);
    EXPECT_FALSE(autoButton->isChecked());
    EXPECT_TRUE(r.up->state());
    QTest::mouseRelease(r.child<QPushButton>("eleup"), Qt::LeftButton);
    EXPECT_FALSE(r.up->state());
    QTest::mousePress(r.child<QPushButton>("eleDwn"), Qt::LeftButton);
    EXPECT_TRUE(r.down->state());
    QTest::mouseRelease(r.child<QPushButton>("eleDwn"), Qt::LeftButton);
    EXPECT_FALSE(r.down->state());
    r.panel->autoElevationStep(0.2); // the tick shows the state
    EXPECT_EQ(autoButton->text(), QString("Ele manu"));
    EXPECT_EQ(BackColour::of(autoButton), 65535);
    EXPECT_EQ(r.up->edges().size(), 2u); // the hold only; no pulse while automatic is off
}

TEST(RotatorPanel, TickPulsesOnThisTicksSensorReadingOnly)
{
    Form1Fixture f;
    f.writeConfig();
    auto up = std::make_shared<RecordingLine>();
    auto down = std::make_shared<RecordingLine>();
    auto lines = std::make_unique<OutputLines>();
    lines->setLine(OutputLines::Role::Up, up);
    lines->setLine(OutputLines::Role::Down, down);
    f.form = std::make_unique<Form1>(f.station, makeQtSerialLink);
    auto* panels = new StationPanels(*f.form, std::move(lines));
    f.form->load();
    f.form->timer().stop();
    auto* autoButton = f.child<QPushButton>("EleAuto");
    autoButton->click();

    ASSERT_TRUE(f.tickWith(sensorReply(300, 5)));
    panels->rotator().controller().waitForPulses();
    EXPECT_EQ(up->edges().size(), 2u); // one pulse up
    EXPECT_EQ(autoButton->text(), QString("Ele Auto"));
    EXPECT_EQ(BackColour::of(autoButton), 65280);

    f.form->tick(); // no new reading: nothing moves on the old one
    panels->rotator().controller().waitForPulses();
    EXPECT_EQ(up->edges().size(), 2u);

    for (int raw : { 400, 1000, 1100 }) // no pulse at 0.4 and 1.0, one down at 1.1
        ASSERT_TRUE(f.tickWith(sensorReply(raw, 5)));
    panels->rotator().controller().waitForPulses();
    EXPECT_EQ(up->edges().size(), 2u);
    EXPECT_EQ(down->edges().size(), 2u); // one pulse down
}
