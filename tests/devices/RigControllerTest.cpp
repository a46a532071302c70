#include "devices/rig/RigController.h"
#include "StationRig.h"
#include "core/ExtensionSettings.h"
#include "devices/rig/CatCodec.h"
#include "tests/support/TempDir.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace {
QByteArray h(const char* hex)
{
    return QByteArray::fromHex(hex);
}
const QByteArray cw = h("0200000007");
const QByteArray usb = h("0100000007");

struct Cell {
    int index;
    QByteArray com1;
    QByteArray com2;
    const char* frequencyText = "-"; // "-": left as it was
};

// Clicks each option on a fresh pair of ports and checks what each port's device got.
void checkCells(const QString& rigPort, bool check2, bool check3, int band, const QList<Cell>& cells)
{
    for (const Cell& c : cells) {
        StationRig s(rigPort, check2, check3);
        ASSERT_TRUE(s.open(1));
        ASSERT_TRUE(s.open(2));
        RigController rig(s.station, s.ports);
        rig.setBandIndex(band);
        s.station.frequencyText = "-";
        SCOPED_TRACE(testing::Message() << rigPort.toStdString() << " text " << check2 << check3 << " band "
                                        << band << " option " << c.index);
        EXPECT_TRUE(rig.OptFT847_Click(c.index));
        EXPECT_EQ(s.received(1, c.com1.size()).toHex(' '), c.com1.toHex(' '));
        EXPECT_EQ(s.received(2, c.com2.size()).toHex(' '), c.com2.toHex(' '));
        EXPECT_EQ(s.station.frequencyText, QString::fromLatin1(c.frequencyText));
        EXPECT_TRUE(s.prompts.shown.isEmpty());
    }
}
} // namespace

TEST(RigController, PresetCellsForTheRigOnCom1)
{
    checkCells("Com1", false, false, 2,
        { { 1, cw + h("1441000001"), "14410000", "14410000" },
            { 2, usb + h("1442000001"), "14420000", "14420000" },
            { 3, usb + h("1449000001"), "14490000", "14490000" }, { 4, cw, "" }, { 5, usb, "" } });
    // The text dialect keeps each cell's own order of mode and frequency.
    checkCells("Com1", true, false, 2,
        { { 1, "MD03;FA144100000;", "", "14410000" }, { 2, "FA144200000;MD03;", "", "14420000" },
            { 3, "FA144900000;", "", "14490000" }, { 4, "MD03;", "" }, { 5, "MD02;", "" } });
}

TEST(RigController, PresetCellsForTheRigOnCom2ByBand)
{
    // deliberate: the 50 MHz "100" cell sends only the plain text, no mode and no BCD.
    checkCells("Com2", false, false, 1,
        { { 1, "", "5010000", "5010000" }, { 2, "", cw + "5020000" + h("0502000001"), "5020000" },
            { 3, "", cw + "5090000" + h("0509000001"), "5090000" }, { 4, "", cw }, { 5, "", usb } });
    checkCells("Com2", false, false, 2,
        { { 1, "", cw + "14410000" + h("1441000001"), "14410000" },
            { 2, "", cw + "14420000" + h("1442000001"), "14420000" },
            { 3, "", cw + "14490000" + h("1449000001"), "14490000" }, { 4, "", cw }, { 5, "", usb } });
    // Binary mode to Com2 even when Com2 speaks text; the frequency then goes to Com1 as text.
    checkCells("Com2", false, true, 2, { { 2, "FA144200000;", cw + "14420000", "14420000" } });
}

TEST(RigController, SendFreqOpensClosedPortsAndSendsTextThenBcd)
{
    StationRig s;
    RigController rig(s.station, s.ports);
    const std::tuple<int, const char*, const char*> cases[] = { { 2, "14410000", "14 41 00 00 01" },
        { 1, "5020000", "05 02 00 00 01" }, { 2, "99999999", "99 99 99 99 01" } };
    for (const auto& [band, text, bcd] : cases) {
        rig.setBandIndex(band);
        rig.SendFreq(text);
        EXPECT_EQ(s.received(2, qstrlen(text)), QByteArray(text));
        EXPECT_EQ(s.received(1, 5).toHex(' '), QByteArray(bcd));
    }
    EXPECT_TRUE(s.ports.com(1).isOpen() && s.ports.com(2).isOpen());

    // A rig port name that is neither "Com1" nor "Com2" gets only the plain text.
    s.station.rigPortName = "COM1";
    rig.SendFreq("14410000");
    EXPECT_EQ(s.received(2, 8), QByteArray("14410000"));
    EXPECT_EQ(s.received(1, 0, 50), QByteArray());
}

TEST(RigController, TextDialectFrequency)
{
    StationRig s("Com1", true);
    RigController rig(s.station, s.ports);
    rig.SendFreq("14410000");
    EXPECT_EQ(s.received(1, 12), QByteArray("FA144100000;"));
    s.station.frequencyText = "5010000";
    rig.SendFreqText();
    EXPECT_EQ(s.received(1, 11), QByteArray("FA50100000;"));
    EXPECT_EQ(s.received(2, 8), QByteArray("14410000")); // SendFreq's plain text only
}

// The first click and the presets after it are driven through the window; here the 50 MHz
// preset and what clears and sets the flag.
TEST(RigController, BandPresetFlag)
{
    StationRig s;
    RigController rig(s.station, s.ports);
    rig.setCounter(14400000);
    rig.OptBandV_Click(3);
    rig.OptBandV_Click(1);
    EXPECT_EQ(s.received(1, 10).right(5).toHex(' '), QByteArray("05 02 00 00 01"));
    EXPECT_EQ(s.received(2, 8 + 7).right(7), QByteArray("5020000"));

    rig.setPresetFlag(false); // a beacon took over the frequency
    rig.OptBandV_Click(2);
    EXPECT_EQ(rig.counter(), 5020000);
    rig.OptBandR_Click(4);
    EXPECT_TRUE(rig.presetFlag());
}

TEST(RigController, PushToTalkIsBinaryEvenForATextRigAndGoesToTheRigPort)
{
    StationRig s("Com1", true);
    ASSERT_TRUE(s.open(1));
    ASSERT_TRUE(s.open(2));
    RigController rig(s.station, s.ports);
    rig.setPtt(true);
    EXPECT_EQ(s.received(1, 5).toHex(' '), QByteArray("00 00 00 00 08"));
    s.station.rigPortName = "Com2";
    rig.setPtt(false);
    EXPECT_EQ(s.received(2, 5).toHex(' '), QByteArray("00 00 00 00 88"));
    EXPECT_EQ(s.received(1, 0, 50), QByteArray());
}

TEST(RigController, ReleasingAfterOnePassLeavesTheRigOneStepBehind)
{
    StationRig s;
    RigController rig(s.station, s.ports);
    rig.setCounter(14420000);
    rig.setStepOption(4);
    QSignalSpy ended(&rig, &RigController::tuningEnded);
    rig.startTuning(-1); // FreqDwn mouse-down: the first pass runs at once
    rig.stopTuning();
    EXPECT_EQ(rig.displayText(), QString("144.19"));
    EXPECT_EQ(s.received(1, 5).toHex(' '), QByteArray("14 42 00 00 01")); // the rig is one behind
    EXPECT_EQ(s.received(2, 8), QByteArray("14420000"));
    EXPECT_TRUE(ended.count() == 1 || ended.wait(1000));
    EXPECT_EQ(rig.passes(), 1);
    EXPECT_FALSE(s.station.hold);
}

TEST(RigController, HoldingSendsEveryPassPacedByTheLine)
{
    StationRig s;
    RigController rig(s.station, s.ports);
    rig.setCounter(14410000);
    rig.setStepOption(2);
    qint64 mostQueued = 0;
    QObject::connect(&rig, &RigController::passSent, [&](qint64 q) { mostQueued = qMax(mostQueued, q); });
    QSignalSpy ended(&rig, &RigController::tuningEnded);

    rig.startTuning(+1);
    EXPECT_TRUE(s.station.hold);
    QByteArray com1, com2;
    (void)QTest::qWaitFor(
        [&] {
            com1 += s.pty[0].readAvailable();
            com2 += s.pty[1].readAvailable();
            return false;
        },
        400);
    rig.stopTuning();
    ASSERT_TRUE(ended.count() == 1 || ended.wait(1000));
    com1 += s.received(1, 0, 100);
    com2 += s.received(2, 0);

    const qint64 n = rig.passes();
    // 13 bytes a pass at 9600 baud on the busier port (8 on Com2): about 9 ms a pass.
    EXPECT_GT(n, 10);
    EXPECT_LT(n, 400 / 8 + 5);
    EXPECT_EQ(rig.counter(), 14410000 + 10 * n);
    QByteArray want1, want2;
    for (qint64 i = 0; i < n; ++i) {
        want1 += Cat::frequencyCommand(QString::number(14410000 + 10 * i), 8);
        want2 += QByteArray::number(14410000 + 10 * i);
    }
    EXPECT_EQ(com1.toHex(), want1.toHex());
    EXPECT_EQ(com2, want2);
    EXPECT_LE(mostQueued, 13); // never more than one pass waiting
}

TEST(RigController, TransmitTextWaitsThenWritesToCom1)
{
    StationRig s("Com2", false, true);
    ASSERT_TRUE(s.open(1));
    RigController rig(s.station, s.ports);
    rig.setTransmitWaitMs(150);
    bool done = false;
    QElapsedTimer t;
    t.start();
    rig.switchTransmitText(true, [&] { done = true; });
    EXPECT_FALSE(done);
    EXPECT_EQ(s.received(1, 4), QByteArray("TX1;"));
    EXPECT_GE(t.elapsed(), 150);
    EXPECT_TRUE(done);
    rig.switchTransmitText(false);
    EXPECT_EQ(s.received(1, 4), QByteArray("TX0;"));
}

TEST(RigController, RigPortNameComesFromKestrelIni)
{
    TempDir dir;
    RecordingPrompts prompts;
    Station station(prompts);
    StationPorts ports(makeQtSerialLink);
    for (const auto& [ini, taken] : { std::pair { "", "Com1" }, { "Com2", "Com2" }, { "COM3", "Com1" } }) {
        station.rigPortName.clear();
        ExtensionSettings::setValue(ExtensionKey::RigPort, ini);
        RigController rig(station, ports);
        EXPECT_EQ(station.rigPortName, QString(taken)) << ini;
    }
    EXPECT_EQ(prompts.shown,
        QStringList {
            "Kestrel.ini rig/port is \"COM3\"; it must be Com1 or Com2. The rig is taken to be on Com1." });
}
