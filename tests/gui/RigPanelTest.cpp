// The rig panel on the offscreen platform, driven by objectName, its ports on pseudo-terminals.
#include "ui/rig/RigPanel.h"
#include "devices/rig/RigController.h"
#include "tests/devices/StationRig.h"
#include "tests/support/TempDir.h"
#include "ui/rig/BackColour.h"
#include "ui/widgets/OptionGroup.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {
struct RigPanelRig : StationRig {
    TempDir dir;
    std::unique_ptr<RigPanel> panel;

    explicit RigPanelRig(bool openPorts = true)
    {
        station.settings.setInt32(Setting::RigFrequency, 144000);
        station.settings.setInt16(Setting::MainState, 1);
        if (openPorts) {
            open(1);
            open(2);
        }
        panel = std::make_unique<RigPanel>(station, ports);
        panel->restoreFromSettings();
        panel->show();
    }
    template <typename T> T* child(const char* name)
    {
        return panel->findChild<T*>(QString::fromLatin1(name));
    }
    void clickOption(const char* group, int index) { child<OptionGroup>(group)->button(index)->click(); }
    QString shown() { return child<QLabel>("formatFre")->text(); }
};
} // namespace

TEST(RigPanel, CaptionsAndTheRestoredFrequency)
{
    RigPanelRig r;
    const std::pair<const char*, QStringList> groups[]
        = { { "OptFT847", { "100", "200", "900", "CW", "SSB" } },
              { "OptBandV", { "50 MHz", "144 MHz", "432 MHz" } },
              { "OptBandR", { "1296", "2320", "3400", "5760", "10368", "24048", "47088", "76032", "122G" } },
              { "OptQRG", { "0.1kHz", "1kHz", "10kHz", "100kHz" } } };
    for (const auto& [name, captions] : groups)
        EXPECT_EQ(r.child<OptionGroup>(name)->captions(), captions) << name;
    EXPECT_EQ(
        r.child<OptionGroup>("OptFT847")->title() + r.child<OptionGroup>("OptQRG")->title(), "FT847QRG");
    for (const auto& [name, caption] :
        { std::pair { "FreqUp", "QRG up" }, { "FreqDwn", "QRG dn" }, { "TxRx", "TRX" } })
        EXPECT_EQ(r.child<QPushButton>(name)->text(), QString(caption)) << name;
    EXPECT_EQ(r.shown(), QString("144"));
}

TEST(RigPanel, PresetWithCom1ClosedTurnsTheLampRedAndSendsNothing)
{
    RigPanelRig r(false);
    r.station.settings.setText(Setting::Com1Port, "10");
    QLabel lamp;
    r.panel->setCom1Lamp(&lamp);
    r.clickOption("OptFT847", 1);
    EXPECT_EQ(r.prompts.shown, QStringList { "Com1(10) not Open" });
    EXPECT_EQ(BackColour::of(&lamp), 255);
    EXPECT_EQ(r.pty[1].readFor(100), QByteArray());
}

TEST(RigPanel, ClicksSendTheirCommandsAndBandPresetsComeAfterTheFirst)
{
    RigPanelRig r;
    r.clickOption("OptBandV", 3);
    EXPECT_EQ(r.shown(), QString("144")); // the first click keeps the frequency
    EXPECT_EQ(r.received(1, 5).toHex(' '), QByteArray("14 40 00 00 01"));
    r.clickOption("OptBandV", 3);
    EXPECT_EQ(r.shown(), QString("432.2"));
    EXPECT_EQ(r.received(1, 5).toHex(' '), QByteArray("43 22 00 00 01"));

    r.clickOption("OptFT847", 2);
    r.clickOption("OptFT847", 2); // the option already chosen sends again
    const QByteArray cell = QByteArray::fromHex("01000000071442000001"); // USB, 144.200 on any band
    EXPECT_EQ(r.received(1, 20).toHex(' '), cell.repeated(2).toHex(' '));
    r.clickOption("OptBandR", 5);
    EXPECT_EQ(r.panel->controller().microwaveBand(), 5);
}

TEST(RigPanel, PushToTalkBytesAndColours)
{
    RigPanelRig r;
    auto* trx = r.child<QPushButton>("TxRx");
    trx->click();
    EXPECT_EQ(r.received(1, 5).toHex(' '), QByteArray("00 00 00 00 08"));
    EXPECT_EQ(BackColour::of(trx), 255);
    trx->click();
    EXPECT_EQ(r.received(1, 5).toHex(' '), QByteArray("00 00 00 00 88"));
    EXPECT_EQ(BackColour::of(trx), 65280);
    r.panel->controller().setPtt(true); // the keyer presses it
    EXPECT_TRUE(trx->isChecked() && BackColour::of(trx) == 255);
    EXPECT_EQ(r.received(1, 5).toHex(' '), QByteArray("00 00 00 00 08"));
}

TEST(RigPanel, SettingsRoundTrip)
{
    RigPanelRig r;
    r.station.settings.setInt32(Setting::RigFrequency, 50200);
    r.station.settings.setInt16(Setting::MainState, 3);
    r.panel->restoreFromSettings();
    EXPECT_EQ(r.shown(), QString("50.2"));
    EXPECT_EQ(std::pair(r.child<OptionGroup>("OptBandV")->value(), r.child<OptionGroup>("OptQRG")->value()),
        std::pair(1, 3));
    EXPECT_EQ(r.station.frequencyText, QString("5020000"));
    r.clickOption("OptQRG", 2);
    r.clickOption("OptBandR", 7);
    r.panel->controller().setCounter(14430000);
    r.panel->writeToSettings();
    EXPECT_EQ(r.station.settings.intAt(Setting::RigFrequency), 144300);
    EXPECT_EQ(r.station.settings.intAt(Setting::MainState), 2);

    RigPanel again(r.station, r.ports);
    again.restoreFromSettings();
    EXPECT_EQ(again.findChild<OptionGroup*>("OptBandR")->value(), 7);
}
