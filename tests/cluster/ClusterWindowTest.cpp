#include "tests/cluster/WindowFixture.h"

#include "ui/widgets/OptionGroup.h"

#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QTcpSocket>

namespace {
// A radio button takes clicks on its indicator and caption only, not on the rest of its width.
void clickOption(OptionGroup* group, int index)
{
    QRadioButton* b = group->button(index);
    QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(6, b->height() / 2));
}

QByteArray settingsLine(const TempDir& dir, int line)
{
    return dir.read("Kestrel.txt").split('\n').value(line);
}
} // namespace

TEST(ClusterWindow, SettingTwentyFourTwoConnectsToServerTwo)
{
    WindowFixture f;
    TestNode second;
    f.pointAt(2, second.port());
    f.station.settings.setInt16(Setting::ClusterChoice, 2);
    SaveStationConfig(f.station);
    f.open(false);
    EXPECT_EQ(f.window->objectName(), "form3");
    EXPECT_TRUE(f.connectedTo(second));
    EXPECT_EQ(f.child<QTcpSocket>("socket")->peerPort(), second.port());
    EXPECT_EQ(f.node.connections, 0);
}

TEST(ClusterWindow, SentLinesEndInCrLfReceivedTextKeepsBackspaceAndLineEnds)
{
    WindowFixture f;
    f.open();
    EXPECT_EQ(f.child<QLabel>("lblState")->text(), QString("Connected to 127.0.0.1:%1").arg(f.node.port()));
    auto* input = f.child<QLineEdit>("TXTinput");
    QTest::keyClicks(input, "sh/dx 5");
    EXPECT_EQ(input->text(), "SH/DX 5"); // typed in upper case
    QTest::keyClick(input, Qt::Key_Return);
    EXPECT_TRUE(input->text().isEmpty());
    f.click("cmdConnect");
    f.click("cmdDisconnect");
    EXPECT_TRUE(f.node.waitForReceived("SH/DX 5\r\n\r\nbye\r\n")) << f.node.received.constData();

    f.node.send("Hello DL1ABC, this is the nodX\bE\r\nline two\rline three\nfour");
    EXPECT_TRUE(f.waitForTerminal("four"));
    EXPECT_EQ(f.terminalText(), "Hello DL1ABC, this is the nodE\nline two\nline three\nfour");
    f.node.send("\b\bur\r\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.terminalText().endsWith("\nfour\n"); }, 5000));
    auto* term = f.child<QPlainTextEdit>("TXTterm");
    EXPECT_EQ(term->textCursor().position(), term->document()->characterCount() - 1);
}

TEST(ClusterWindow, SpotLinesCutTheLocatorAndCarryEachTag)
{
    WindowFixture f;
    f.station.settings.setText(Setting::MyLocator, "JO62QM12");
    SaveStationConfig(f.station);
    f.station.frequencyText = "14430000";
    f.station.spotQrg = "144174.0";
    f.station.spotCall = "SP9ABC";
    f.station.spotRemark = "JO90KA";
    f.open();
    EXPECT_EQ(f.child<QLineEdit>("QrgD")->text(), "144300.0");
    f.child<QLineEdit>("CallD")->setText("DL1ABC");
    f.click("Cmdrefresh");
    for (auto [option, tag] : { std::pair { 1, "<Tr>" }, { 2, "<Rs>" }, { 3, "<Es>" } }) {
        if (option > 1)
            clickOption(f.child<OptionGroup>("uSc_MultiOption2"), option);
        EXPECT_EQ(f.child<QLineEdit>("txtmessageD")->text(), QString("dx 144300.0 DL1ABC%1JO62QM").arg(tag));
        EXPECT_EQ(
            f.child<QLineEdit>("txtMessageB")->text(), QString("dx 144174.0 SP9ABC JO90KA%1JO62QM").arg(tag));
    }
    EXPECT_EQ(f.station.settings.intAt(Setting::ClusterOption2), 3);
    EXPECT_EQ(settingsLine(f.dir, 26), "3\r");
}

TEST(ClusterWindow, OptionsRestoredAtLoadAndSendTheChosenLine)
{
    WindowFixture f;
    f.station.settings.setInt16(Setting::ClusterOption1, 2);
    f.station.settings.setInt16(Setting::ClusterOption2, 3);
    f.station.settings.setText(Setting::MyLocator, "JO62QM");
    SaveStationConfig(f.station);
    // Load reads the file again: a value only in memory is replaced by the saved one.
    f.station.settings.setInt16(Setting::ClusterOption2, 1);
    f.station.spotQrg = "50110.0";
    f.station.spotCall = "VK4ABC";
    f.open();
    auto* spotChoice = f.child<OptionGroup>("uSc_MultiOption1");
    EXPECT_EQ(spotChoice->value(), 2);
    EXPECT_EQ(f.child<OptionGroup>("uSc_MultiOption2")->value(), 3);
    f.click("cmdSendmessage");
    EXPECT_TRUE(f.node.waitForReceived("dx 50110.0 VK4ABC <Es>JO62QM\r\n"));

    clickOption(spotChoice, 1);
    EXPECT_EQ(settingsLine(f.dir, 25), "1\r");
    f.child<QLineEdit>("txtmessageD")->setText("dx 7030.0 K2ABC edited by hand");
    f.click("cmdSendmessage");
    EXPECT_TRUE(f.node.waitForReceived("dx 50110.0 VK4ABC <Es>JO62QM\r\ndx 7030.0 K2ABC edited by hand\r\n"))
        << f.node.received.constData();
}

TEST(ClusterWindow, SpotsFillTheTableFilterByBandAndTuneOnDoubleClick)
{
    WindowFixture f;
    QStringList tuned;
    int settingsOpened = 0;
    f.open();
    f.window->setTuneTo([&](const QString& text) { tuned << text; });
    f.window->setOpenSettings([&] { ++settingsOpened; });
    f.node.send("DX de W3LPL:     14025.0  JA1ABC       CQ CQ                          1234Z\r\n"
                "DX de OK1XYZ-#:  144174.0 SP9ABC       JO90KA<TR>JO70FD               1235Z JO70\r\n"
                "WWV de W0MU <18>:   SFI=68, A=5, K=1\r\n"
                "DX de G4ABC:     50110.0  VK4ABC       tnx qso 73                     1236Z\r\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.spotRows() == 3; }, 5000));
    EXPECT_EQ(f.cell(0, 2), "VK4ABC");
    EXPECT_EQ(f.cell(2, 1), "14025.0");

    auto* band = f.child<QComboBox>("cboBand");
    band->setCurrentIndex(band->findText("2m"));
    ASSERT_EQ(f.spotRows(), 1);
    auto* table = f.child<QTableView>("tblSpots");
    const QPoint at = table->visualRect(table->model()->index(0, 2)).center();
    // An item view takes a double click only after the press that starts it.
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(f.child<QLineEdit>("QrgD")->text(), "144174.0");
    EXPECT_EQ(f.child<QLineEdit>("CallD")->text(), "SP9ABC");
    EXPECT_EQ(f.station.spotQrg, "144174.0");
    EXPECT_EQ(f.station.spotCall, "SP9ABC");
    EXPECT_EQ(tuned, QStringList({ "14417400" }));
    EXPECT_TRUE(f.child<QLineEdit>("txtmessageD")->text().startsWith("dx 144174.0 SP9ABC<Tr>"));

    // Spots arriving while filtered show only when on the band.
    f.node.send("DX de DL1ABC:  144300.0  OK1ABC  cq  1237Z\r\nDX de DL1ABC:  7030.0  K2ABC  cq  1238Z\r\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.spotRows() == 2; }, 5000));
    EXPECT_EQ(f.cell(0, 2), "OK1ABC");
    band->setCurrentIndex(0);
    EXPECT_EQ(f.spotRows(), 5);
    f.click("Initial");
    EXPECT_EQ(settingsOpened, 1);
}

TEST(ClusterWindow, FailedConnectionSaysSoAndTcpReconnects)
{
    WindowFixture f;
    const quint16 deadPort = [] {
        QTcpServer probe; // a port nobody listens on any more
        probe.listen(QHostAddress::LocalHost, 0);
        return probe.serverPort();
    }();
    f.pointAt(1, deadPort);
    SaveStationConfig(f.station);
    f.open(false);
    const QString failed = QString("*** Connection to 127.0.0.1:%1 failed").arg(deadPort);
    ASSERT_TRUE(f.waitForTerminal(failed)) << f.terminalText().toStdString();
    EXPECT_TRUE(f.terminalText().contains("Press TCP to reconnect."));
    EXPECT_EQ(f.child<QLabel>("lblState")->text(), "Not connected");

    // Typing while disconnected keeps the line and says why.
    f.type("sh/dx");
    EXPECT_EQ(f.child<QLineEdit>("TXTinput")->text(), "SH/DX");
    EXPECT_TRUE(f.waitForTerminal("*** Not connected, line not sent. Press TCP to reconnect."));

    f.pointAt(1, f.node.port());
    f.click("cmdTCP");
    EXPECT_TRUE(f.connectedTo(f.node));
    f.type("");
    EXPECT_TRUE(f.node.waitForReceived("SH/DX\r\n"));
}
