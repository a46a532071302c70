// The keyer panel: its controls, which text goes out, transmit around it, the settings.
#include "ui/keyer/KeyerPanel.h"
#include "devices/keyer/KeyerController.h"
#include "devices/rig/RigController.h"
#include "tests/devices/StationRig.h"
#include "ui/rig/BackColour.h"
#include "ui/widgets/OptionGroup.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {
double lengthMs(const RecordingLine::Edge& on, const RecordingLine::Edge& off)
{
    return std::chrono::duration<double, std::milli>(off.at - on.at).count();
}

struct KeyerPanelRig : StationRig {
    std::unique_ptr<RigController> rig;
    std::unique_ptr<KeyerPanel> panel;

    KeyerPanelRig()
    {
        open(1);
        open(2);
        rig = std::make_unique<RigController>(station, ports);
        panel = std::make_unique<KeyerPanel>(station, *rig, lines);
        panel->show();
    }
    template <typename T> T* child(const char* name)
    {
        return panel->findChild<T*>(QString::fromLatin1(name));
    }
    // Clicks "TX Start" and waits for the end; returns the keyed edges.
    std::vector<RecordingLine::Edge> send()
    {
        key->clear();
        QSignalSpy sending(&panel->controller(), &KeyerController::sendingChanged);
        child<QPushButton>("cmdsend")->click();
        EXPECT_TRUE(
            sending.count() == 2 || (sending.wait(5000) && (sending.count() == 2 || sending.wait(5000))));
        return key->edges();
    }
};
} // namespace

TEST(KeyerPanel, ControlsCarryTheirNamesCaptionsAndDefaults)
{
    KeyerPanelRig k;
    EXPECT_EQ(k.child<QLineEdit>("Text6")->text(), QString("cq cq de n0call n0call"));
    EXPECT_EQ(k.child<QLineEdit>("Text1")->text(), QString("Text1"));
    const std::pair<const char*, const char*> buttons[] = { { "TXTSel", "TXT Sel" },
        { "cmdsend", "TX Start" }, { "cmdRX", "RX " }, { "CWloop", "CW Loop" }, { "LoopStop", "Loop Stop" } };
    for (const auto& [name, caption] : buttons)
        EXPECT_EQ(k.child<QPushButton>(name)->text(), QString(caption)) << name;
    auto* speed = k.child<OptionGroup>("OptSpeed");
    EXPECT_EQ(
        speed->title() + ": " + speed->captions().join(", "), QString("CW speed: 50 lpm, 60 lpm, 70 lpm"));
}

TEST(KeyerPanel, TxtSelChoosesTheTextAndTheBinaryRigGetsPushToTalk)
{
    KeyerPanelRig k;
    k.child<OptionGroup>("OptSpeed")->button(3)->click();
    k.child<QLineEdit>("Text6")->setText("e");
    k.child<QLineEdit>("Text1")->setText("T");
    EXPECT_EQ(BackColour::of(k.child<QLineEdit>("Text6")), 65280);
    auto edges = k.send();
    ASSERT_EQ(edges.size(), 2u);
    EXPECT_NEAR(lengthMs(edges[0], edges[1]), 50.0, 10.0);
    EXPECT_EQ(k.received(1, 10).toHex(' '), QByteArray("00 00 00 00 08 00 00 00 00 88"));

    k.child<QPushButton>("TXTSel")->click(); // released: Text1, keyed in lower case
    EXPECT_EQ(BackColour::of(k.child<QLineEdit>("Text1")), 65280);
    edges = k.send();
    ASSERT_EQ(edges.size(), 2u);
    EXPECT_NEAR(lengthMs(edges[0], edges[1]), 175.0, 10.0);
    EXPECT_EQ(k.panel->controller().unitMs(), 50);
}

TEST(KeyerPanel, LoopRunsUntilLoopStop)
{
    KeyerPanelRig k;
    k.child<OptionGroup>("OptSpeed")->button(3)->click();
    k.child<QLineEdit>("Text6")->setText("e");
    k.child<QPushButton>("CWloop")->click();
    QSignalSpy sending(&k.panel->controller(), &KeyerController::sendingChanged);
    k.child<QPushButton>("cmdsend")->click();
    EXPECT_EQ(BackColour::of(k.child<QPushButton>("cmdsend")), 255);
    QTest::qWait(700); // two passes of 300 ms and a bit
    EXPECT_TRUE(k.panel->controller().isSending());
    k.child<QPushButton>("LoopStop")->click();
    ASSERT_TRUE(sending.wait(2000) || sending.count() == 2);
    EXPECT_EQ(k.panel->controller().keyer().passes(), 3);
    EXPECT_EQ(k.key->edges().size(), 6u);
}

TEST(KeyerPanel, SettingsRoundTrip)
{
    KeyerPanelRig k;
    SettingsTable& t = k.station.settings;
    t.setInt16(Setting::CwSpeed, 1);
    t.setInt16(Setting::TxtSel, 0);
    t.setInt16(Setting::CwLoop, -1);
    t.setText(Setting::CwText1, "vvv de n0call");
    t.setText(Setting::CwText2, "cq test");
    k.panel->restoreFromSettings();
    EXPECT_EQ(k.child<OptionGroup>("OptSpeed")->value(), 1);
    EXPECT_TRUE(!k.child<QPushButton>("TXTSel")->isChecked() && k.child<QPushButton>("CWloop")->isChecked());
    EXPECT_EQ(k.child<QLineEdit>("Text6")->text(), QString("cq test"));
    EXPECT_EQ(k.panel->selectedText(), QString("vvv de n0call"));
    EXPECT_EQ(BackColour::of(k.child<QLineEdit>("Text1")), 65280);
    EXPECT_EQ(BackColour::of(k.child<QLineEdit>("Text6")), 16777215);

    k.child<OptionGroup>("OptSpeed")->button(2)->click();
    k.child<QPushButton>("TXTSel")->click();
    k.child<QPushButton>("CWloop")->click();
    k.child<QLineEdit>("Text6")->setText("qrl?");
    k.panel->writeToSettings();
    EXPECT_EQ(QList<int>({ t.intAt(Setting::CwSpeed), t.intAt(Setting::TxtSel), t.intAt(Setting::CwLoop) }),
        QList<int>({ 2, -1, 0 }));
    EXPECT_EQ(t.textAt(Setting::CwText2), QString("qrl?"));
}
