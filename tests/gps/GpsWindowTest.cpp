#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "sim/pty/PtyPair.h"
#include "tests/gps/PrintQString.h"
#include "tests/support/TempDir.h"
#include "ui/gps/Form4.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

const QByteArray kRmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
const QByteArray kRmcV = "$GPRMC,235947,V,,,,,,,,,*3F\r\n";
const QByteArray kGga = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
const QByteArray kGsa3 = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n";
const QByteArray kGsa2 = "$GPGSA,A,2,17,22*37\r\n";
const QByteArray kGsv = "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75\r\n";

// A GPS window on a pseudo-terminal standing in for the receiver, in a scratch directory.
class GpsWindow : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(pty.isOpen()) << pty.errorText().toStdString();
        LoadStationConfig(station);
        station.settings.setText(Setting::Com3Port, pty.slavePath());
        ASSERT_TRUE(SaveStationConfig(station)); // the window reloads the file when it opens
        window = std::make_unique<Form4>(station, std::make_unique<QtSerialLink>());
    }

    QLineEdit* box(const char* name) { return window->findChild<QLineEdit*>(QString::fromLatin1(name)); }
    QString text(const char* name) { return box(name)->text(); }
    QPushButton* command1() { return window->findChild<QPushButton*>(QStringLiteral("Command1")); }
    QLabel* grid() { return window->findChild<QLabel*>(QStringLiteral("Grid")); }
    QPlainTextEdit* log() { return window->findChild<QPlainTextEdit*>(QStringLiteral("Text1")); }

    void start()
    {
        command1()->click();
        ASSERT_EQ(command1()->text(), "&stop") << prompts.shown.join(" | ").toStdString();
    }
    // Sends bytes as the receiver and waits until the window shows `name` == `value`.
    bool sendAndWait(const QByteArray& bytes, const char* name, const QString& value)
    {
        EXPECT_TRUE(pty.write(bytes));
        return QTest::qWaitFor([&] { return text(name) == value; }, 3000);
    }

    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
    PtyPair pty;
    std::unique_ptr<Form4> window;
};

} // namespace

TEST_F(GpsWindow, OpensWithItsPortLabelAndControls)
{
    EXPECT_EQ(window->objectName(), "form4");
    EXPECT_EQ(
        window->findChild<QLabel*>(QStringLiteral("lblCom3"))->text(), "Com3 PortNr: " + pty.slavePath());
    EXPECT_EQ(command1()->text(), "&start");
    EXPECT_EQ(grid()->text(), "GPS NO FIX");
    for (const char* name : { "txtUT", "txtRW", "txtLa", "txtLAD", "txtLo", "txtLOD", "txtSK", "txtCO",
             "txtDS", "txtMD", "txtUT2", "txtLa2", "txtLAD2", "txtLo2", "txtLOD2", "txtQU", "txtSA", "txtHD",
             "txtALS", "txtALSU", "txtALE", "txtALEU", "txtASM", "txtMO", "txtSat1", "txtSat12", "txtPDOP",
             "txtHDOP", "txtVDOP" })
        EXPECT_TRUE(box(name)) << name;
    EXPECT_TRUE(window->findChild<QLabel*>(QStringLiteral("Image1"))->isHidden());
}

TEST_F(GpsWindow, ActivationReloadsTheSettingsFile)
{
    station.settings.setText(Setting::Com3Port, QStringLiteral("7"));
    ASSERT_TRUE(SaveStationConfig(station));
    station.settings.setText(Setting::Com3Port, QStringLiteral("9")); // not saved
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_EQ(station.settings.textAt(Setting::Com3Port), "7");
    EXPECT_TRUE(window->findChild<QLabel*>(QStringLiteral("Image1"))->isHidden());
}

TEST_F(GpsWindow, StartAndStopSwitchThePortAndTheCaption)
{
    start();
    EXPECT_TRUE(window->link().isOpen());
    command1()->click();
    EXPECT_EQ(command1()->text(), "&start");
    EXPECT_FALSE(window->link().isOpen());
    EXPECT_TRUE(prompts.shown.isEmpty());
}

TEST_F(GpsWindow, APortThatCannotBeOpenedIsReportedAndTheCaptionStays)
{
    station.settings.setText(Setting::Com3Port, QStringLiteral("/dev/no-such-gps"));
    command1()->click();
    EXPECT_EQ(prompts.shown, QStringList { "Com3(/dev/no-such-gps)Port not open" });
    EXPECT_EQ(command1()->text(), "&start");
    EXPECT_FALSE(window->link().isOpen());
}

TEST_F(GpsWindow, TwoSentencesInOneReadAreBothDecoded)
{
    start();
    ASSERT_TRUE(sendAndWait(kRmc + kGga, "txtALEU", "m"));
    EXPECT_EQ(text("txtUT"), "12:35:19");
    EXPECT_EQ(text("txtRW"), "A");
    EXPECT_EQ(text("txtLa"), "48.1173");
    EXPECT_EQ(text("txtLAD"), "N");
    EXPECT_EQ(text("txtLo"), "11.51666667");
    EXPECT_EQ(text("txtLOD"), "E");
    EXPECT_EQ(text("txtSK"), "22.4");
    EXPECT_EQ(text("txtCO"), "84.4");
    EXPECT_EQ(text("txtDS"), "23.03.94");
    EXPECT_EQ(text("txtMD"), "3.1");
    EXPECT_EQ(text("txtUT2"), "12:35:19");
    EXPECT_EQ(text("txtLa2"), "48.1173");
    EXPECT_EQ(text("txtLOD2"), "E");
    EXPECT_EQ(text("txtQU"), "GPS fix");
    EXPECT_EQ(text("txtSA"), "8");
    EXPECT_EQ(text("txtHD"), "0.9");
    EXPECT_EQ(text("txtALS"), "545.4");
    EXPECT_EQ(text("txtALSU"), "m");
    EXPECT_EQ(text("txtALE"), "46.9");
    EXPECT_EQ(log()->toPlainText(), QString::fromLatin1(kRmc + kGga).trimmed().replace("\r\n", "\n"));
}

TEST_F(GpsWindow, ASentenceCutInTheMiddleIsDecodedWhenItsEndArrives)
{
    start();
    ASSERT_TRUE(pty.write(kGga.left(30)));
    QTest::qWait(200);
    EXPECT_EQ(text("txtUT2"), "");
    ASSERT_TRUE(sendAndWait(kGga.mid(30), "txtUT2", "12:35:19"));
    EXPECT_EQ(text("txtQU"), "GPS fix");
}

TEST_F(GpsWindow, NoFixUntilGsaReportsOne)
{
    start();
    auto* image = window->findChild<QLabel*>(QStringLiteral("Image1"));
    ASSERT_TRUE(sendAndWait(kRmcV, "txtUT", "23:59:47"));
    EXPECT_EQ(text("txtRW"), "V");
    EXPECT_EQ(grid()->text(), "GPS NO FIX");
    ASSERT_TRUE(sendAndWait(kRmc, "txtRW", "A"));
    EXPECT_EQ(grid()->text(), "GPS NO FIX");
    EXPECT_TRUE(image->isHidden());

    ASSERT_TRUE(sendAndWait(kGsa2, "txtMO", "2D-Fix"));
    EXPECT_EQ(grid()->text(), "JN58SC   48.117300° N  11.516667° E");
    EXPECT_EQ(grid()->palette().color(QPalette::WindowText), QColor(255, 255, 0));
    EXPECT_FALSE(image->isHidden());
    ASSERT_TRUE(sendAndWait(kGsa3, "txtMO", "3D-Fix"));
    EXPECT_EQ(grid()->palette().color(QPalette::WindowText), QColor(0, 255, 0));
    EXPECT_EQ(text("txtASM"), "A");
    EXPECT_EQ(text("txtSat1"), "4");
    EXPECT_EQ(text("txtSat3"), "");
    EXPECT_EQ(text("txtSat8"), "24");
    EXPECT_EQ(text("txtPDOP"), "2.5");
    EXPECT_EQ(text("txtVDOP"), "2.1");

    ASSERT_TRUE(sendAndWait("$GPGSA,A,1,,,,,,,,,,,,,,,*1E\r\n", "txtMO", "No-Fix"));
    EXPECT_EQ(grid()->text(), "GPS NO FIX");
    EXPECT_TRUE(image->isHidden());
}

TEST_F(GpsWindow, GsvGoesIntoTheLogAsGroups)
{
    start();
    ASSERT_TRUE(pty.write(kGsv));
    ASSERT_TRUE(QTest::qWaitFor([&] { return log()->blockCount() >= 2; }, 3000));
    EXPECT_EQ(log()->toPlainText(),
        QString::fromLatin1(kGsv).trimmed() + "\n[1 40 83 46] [2 17 308 41] [12 7 344 39] [14 22 228 45]");
}

TEST_F(GpsWindow, MultiSystemTalkersDecodeLikeGps)
{
    start();
    ASSERT_TRUE(sendAndWait("$GNRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*74\r\n"
                            "$GNGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*59\r\n"
                            "$GNGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*27\r\n",
        "txtMO", "3D-Fix"));
    EXPECT_EQ(text("txtUT"), "12:35:19");
    EXPECT_EQ(text("txtLo"), "11.51666667");
    EXPECT_EQ(text("txtQU"), "GPS fix");
    EXPECT_EQ(text("txtALS"), "545.4");
    EXPECT_TRUE(grid()->text().startsWith("JN58SC"));
}

TEST_F(GpsWindow, GarbageWithoutLineEndsDoesNotGrowTheBuffer)
{
    start();
    const QByteArray junk(4096, 'x');
    for (int i = 0; i < 64; ++i) // 256 KiB
        ASSERT_TRUE(pty.write(junk));
    ASSERT_TRUE(QTest::qWaitFor([&] { return pty.pendingForSlave() == 0; }, 3000));
    QTest::qWait(100);
    EXPECT_LE(window->receiver().buffer().pending().size(), NmeaReceiveBuffer::kMaxPending);
    ASSERT_TRUE(sendAndWait("\r\n" + kGga, "txtQU", "GPS fix"));
}

TEST_F(GpsWindow, TheLogStaysBounded)
{
    start();
    QByteArray many;
    for (int i = 0; i < Form4::kLogLines + 100; ++i)
        many += kRmc;
    ASSERT_TRUE(pty.write(many));
    ASSERT_TRUE(QTest::qWaitFor([&] { return log()->blockCount() == Form4::kLogLines; }, 5000));
    QTest::qWait(200);
    EXPECT_EQ(log()->blockCount(), Form4::kLogLines);
}

TEST_F(GpsWindow, ThePositionBecomesTheOwnLocator)
{
    auto* take = window->findChild<QPushButton*>(QStringLiteral("cmdMyLocator"));
    EXPECT_FALSE(take->isEnabled());
    start();
    ASSERT_TRUE(sendAndWait(kRmc + kGga + kGsa3, "txtMO", "3D-Fix"));
    ASSERT_TRUE(take->isEnabled());
    take->click();
    EXPECT_EQ(prompts.asked, QStringList { "Take over JN58SC as own locator?" });
    EXPECT_EQ(station.settings.textAt(Setting::MyLocator), "JN58SC");
    EXPECT_EQ(station.myLocator, "JN58SC");
    EXPECT_TRUE(dir.read("Kestrel.txt").split('\n').value(6).startsWith("\"JN58SC\""));

    // Answering No changes nothing.
    prompts.answers << false;
    station.settings.setText(Setting::MyLocator, QStringLiteral("JO31HH"));
    take->click();
    EXPECT_EQ(station.settings.textAt(Setting::MyLocator), "JO31HH");
}
