#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "sim/pty/PtyPair.h"
#include "tests/gps/NmeaStreams.h"
#include "tests/gps/PrintQString.h"
#include "tests/support/TempDir.h"
#include "ui/gps/Form4.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

const QByteArray kRmc = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";
const QByteArray kGga = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
const QByteArray kGsa3 = "$GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39\r\n";

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

    template <class T = QLineEdit> T* child(const char* name)
    {
        return window->findChild<T*>(QString::fromLatin1(name));
    }
    QString text(const char* name) { return child(name)->text(); }
    void expectBoxes(std::initializer_list<std::pair<const char*, const char*>> boxes)
    {
        for (auto [name, value] : boxes)
            EXPECT_EQ(text(name), value) << name;
    }
    void start()
    {
        child<QPushButton>("Command1")->click();
        ASSERT_EQ(child<QPushButton>("Command1")->text(), "&stop") << prompts.shown.join(" | ").toStdString();
    }
    // Sends bytes as the receiver and waits until the window shows `name` == `value`.
    bool sendAndWait(const QByteArray& bytes, const char* name, const QString& value)
    {
        EXPECT_TRUE(pty.write(bytes));
        return QTest::qWaitFor([&] { return text(name) == value; }, 3000);
    }
    QString grid() { return child<QLabel>("Grid")->text(); }
    bool imageShown() { return !child<QLabel>("Image1")->isHidden(); }
    QPlainTextEdit* log() { return child<QPlainTextEdit>("Text1"); }

    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
    PtyPair pty;
    std::unique_ptr<Form4> window;
};

} // namespace

TEST_F(GpsWindow, OpensStoppedCommand1SwitchesThePortActivationReloads)
{
    EXPECT_EQ(window->objectName(), "form4");
    EXPECT_EQ(child<QLabel>("lblCom3")->text(), "Com3 PortNr: " + pty.slavePath());
    EXPECT_EQ(child<QPushButton>("Command1")->text(), "&start");
    EXPECT_EQ(grid(), "GPS NO FIX");
    EXPECT_FALSE(imageShown());
    start();
    EXPECT_TRUE(window->link().isOpen());
    child<QPushButton>("Command1")->click();
    EXPECT_EQ(child<QPushButton>("Command1")->text(), "&start");
    EXPECT_FALSE(window->link().isOpen());
    EXPECT_TRUE(prompts.shown.isEmpty());

    // Activation reloads the settings file: a value only in memory is replaced.
    station.settings.setText(Setting::Com3Port, QStringLiteral("7"));
    ASSERT_TRUE(SaveStationConfig(station));
    station.settings.setText(Setting::Com3Port, QStringLiteral("9"));
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_EQ(station.settings.textAt(Setting::Com3Port), "7");
}

TEST_F(GpsWindow, APortThatCannotBeOpenedIsReportedAndTheCaptionStays)
{
    station.settings.setText(Setting::Com3Port, QStringLiteral("/dev/no-such-gps"));
    child<QPushButton>("Command1")->click();
    EXPECT_EQ(prompts.shown, QStringList { "Com3(/dev/no-such-gps)Port not open" });
    EXPECT_EQ(child<QPushButton>("Command1")->text(), "&start");
    EXPECT_FALSE(window->link().isOpen());
}

TEST_F(GpsWindow, SentencesInOneReadAreAllDecoded)
{
    start();
    const QByteArray gsv = "$GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75\r\n";
    ASSERT_TRUE(sendAndWait(kRmc + kGga + gsv, "txtALEU", "m"));
    expectBoxes({ { "txtUT", "12:35:19" }, { "txtRW", "A" }, { "txtLa", "48.1173" }, { "txtLAD", "N" },
        { "txtLo", "11.51666667" }, { "txtLOD", "E" }, { "txtSK", "22.4" }, { "txtCO", "84.4" },
        { "txtDS", "23.03.94" }, { "txtMD", "3.1" }, { "txtUT2", "12:35:19" }, { "txtLa2", "48.1173" },
        { "txtLAD2", "N" }, { "txtLo2", "11.51666667" }, { "txtLOD2", "E" }, { "txtQU", "GPS fix" },
        { "txtSA", "8" }, { "txtHD", "0.9" }, { "txtALS", "545.4" }, { "txtALSU", "m" },
        { "txtALE", "46.9" } });
    // The log holds each sentence, GSV followed by its satellite groups.
    EXPECT_EQ(log()->toPlainText(),
        QString::fromLatin1(kRmc + kGga + gsv).trimmed().replace("\r\n", "\n")
            + "\n[1 40 83 46] [2 17 308 41] [12 7 344 39] [14 22 228 45]");
}

TEST_F(GpsWindow, TheFixComesFromGsaAndFromRmcOrGgaWithoutOne)
{
    start();
    ASSERT_TRUE(sendAndWait("$GPRMC,235947,V,,,,,,,,,*3F\r\n", "txtUT", "23:59:47"));
    EXPECT_EQ(text("txtRW"), "V");
    EXPECT_EQ(grid(), "GPS NO FIX");
    EXPECT_FALSE(imageShown());
    // A receiver that sends no GSA: its valid RMC is a fix without height.
    ASSERT_TRUE(sendAndWait(kRmc, "txtRW", "A"));
    EXPECT_EQ(grid(), "JN58SC   48.117300° N  11.516667° E");
    EXPECT_EQ(child<QLabel>("Grid")->palette().color(QPalette::WindowText), QColor(255, 255, 0));
    EXPECT_TRUE(imageShown());

    ASSERT_TRUE(sendAndWait(kGsa3, "txtMO", "3D-Fix"));
    EXPECT_EQ(child<QLabel>("Grid")->palette().color(QPalette::WindowText), QColor(0, 255, 0));
    expectBoxes({ { "txtASM", "A" }, { "txtSat1", "4" }, { "txtSat3", "" }, { "txtSat8", "24" },
        { "txtSat12", "" }, { "txtPDOP", "2.5" }, { "txtHDOP", "1.3" }, { "txtVDOP", "2.1" } });
    EXPECT_EQ(child<QLabel>("lblUsedSystems")->text(), "GPS 4 5 9 12 24");

    // A GSA that says there is none decides while it is fresh.
    ASSERT_TRUE(sendAndWait("$GPGSA,A,1,,,,,,,,,,,,,,,*1E\r\n", "txtMO", "No-Fix"));
    EXPECT_EQ(grid(), "GPS NO FIX");
    EXPECT_FALSE(imageShown());
}

TEST_F(GpsWindow, TheLogStaysBounded)
{
    start();
    ASSERT_TRUE(pty.write(kRmc.repeated(Form4::kLogLines + 100)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return log()->blockCount() == Form4::kLogLines; }, 5000));
    QTest::qWait(200);
    EXPECT_EQ(log()->blockCount(), Form4::kLogLines);
}

TEST_F(GpsWindow, ThePositionBecomesTheOwnLocator)
{
    auto* take = child<QPushButton>("cmdMyLocator");
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

// A receiver that falls silent (frozen, or unplugged behind an adapter that stays) or whose
// port vanishes has no fix any more; its last sentences stand greyed until it speaks again.
TEST_F(GpsWindow, ASilentOrLostReceiverHasNoFix)
{
    start();
    ASSERT_TRUE(sendAndWait(kRmc + kGga + kGsa3, "txtMO", "3D-Fix"));
    auto* take = child<QPushButton>("cmdMyLocator");
    ASSERT_TRUE(take->isEnabled());
    const auto live = [&] { return grid() != "GPS NO FIX" && child("txtLa")->isEnabled(); };
    EXPECT_TRUE(live());

    QElapsedTimer quiet;
    quiet.start();
    QTRY_VERIFY_WITH_TIMEOUT(!live(), 3000);
    EXPECT_GE(quiet.elapsed(), (SilenceWatch::SilentTicks - 1) * Form4::kSilenceCheckMs);
    EXPECT_EQ(grid(), "GPS NO FIX");
    EXPECT_FALSE(imageShown());
    EXPECT_FALSE(take->isEnabled());
    EXPECT_EQ(text("txtLa"), "48.1173"); // the last value, greyed

    ASSERT_TRUE(pty.write(kRmc + kGga + kGsa3));
    QTRY_VERIFY_WITH_TIMEOUT(live(), 1000);
    EXPECT_TRUE(take->isEnabled());

    pty.closeMaster();
    QTRY_VERIFY_WITH_TIMEOUT(!live(), 1000);
    EXPECT_EQ(child<QPushButton>("Command1")->text(), "&start");
    EXPECT_TRUE(prompts.shown.isEmpty());
}

namespace {
class GpsWindowStream : public GpsWindow, public ::testing::WithParamInterface<QString> { };

// The last line of the golden file that starts with `key`, without it.
QString goldenLine(const QString& name, const QString& key)
{
    QFile golden(NmeaStreams::folder().filePath(name + QStringLiteral(".golden")));
    if (!golden.open(QIODevice::ReadOnly))
        return QStringLiteral("(no golden file)");
    QString found;
    for (const QString& line : QString::fromUtf8(golden.readAll()).split(u'\n'))
        if (line.startsWith(key))
            found = line.mid(key.size());
    return found;
}
} // namespace

// Each receiver stream through a real pseudo-terminal: the window ends with the fix and the
// used satellites of every system that the stream's golden file holds.
TEST_P(GpsWindowStream, ShowsTheFixAndTheUsedSatellitesOfEverySystem)
{
    start();
    const NmeaStreams::Stream stream = NmeaStreams::load(GetParam());
    ASSERT_FALSE(stream.bytes.isEmpty());
    const QString wantGrid = goldenLine(GetParam(), QStringLiteral("grid: "));
    const QString wantUsed = goldenLine(GetParam(), QStringLiteral("used: "))
                                 .replace(QStringLiteral(" | "), QStringLiteral("\n"));
    ASSERT_TRUE(pty.write(stream.bytes));
    auto* used = child<QLabel>("lblUsedSystems");
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid() == wantGrid && used->text() == wantUsed; }, 3000))
        << grid().toStdString() << " / " << used->text().toStdString();
    EXPECT_EQ(child<QPushButton>("cmdMyLocator")->isEnabled(), wantGrid != u"GPS NO FIX");
}

INSTANTIATE_TEST_SUITE_P(
    Streams, GpsWindowStream, ::testing::ValuesIn(NmeaStreams::names()), NmeaStreams::testName);
