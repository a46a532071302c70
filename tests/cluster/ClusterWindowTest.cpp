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
    ASSERT_NE(b, nullptr);
    QTest::mouseClick(b, Qt::LeftButton, {}, QPoint(6, b->height() / 2));
}

QList<QByteArray> fileLines(const TempDir& dir)
{
    return dir.read("Kestrel.txt").split('\n');
}

} // namespace

TEST(ClusterWindow, CarriesEveryNamedControl)
{
    WindowFixture f;
    f.open();
    EXPECT_EQ(f.window->objectName(), "form3");
    for (const char* name : { "TXTterm", "QrgD", "CallD", "txtmessageD", "txtMessageB", "TXTinput" })
        EXPECT_NE(f.window->findChild<QWidget*>(name), nullptr) << name;
    for (const char* name :
        { "cmdConnect", "cmdDisconnect", "cmdSendmessage", "cmdTCP", "Cmdrefresh", "Initial", "cmdExit" })
        EXPECT_NE(f.window->findChild<QPushButton*>(name), nullptr) << name;
    EXPECT_NE(f.window->findChild<OptionGroup*>("uSc_MultiOption1"), nullptr);
    EXPECT_NE(f.window->findChild<OptionGroup*>("uSc_MultiOption2"), nullptr);
    EXPECT_NE(f.window->findChild<QTcpSocket*>("socket"), nullptr);
    EXPECT_EQ(f.child<QLabel>("lblState")->text(), QString("Connected to 127.0.0.1:%1").arg(f.node.port()));
}

TEST(ClusterWindow, SettingTwentyFourTwoConnectsToServerTwo)
{
    WindowFixture f;
    TestNode second;
    f.pointAt(2, second.port());
    f.station.settings.setInt16(Setting::ClusterChoice, 2);
    SaveStationConfig(f.station);
    f.window = std::make_unique<ClusterWindow>(f.station);
    f.window->show();
    EXPECT_TRUE(second.waitForClient());
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.window->client()->isConnected(); }, 5000));
    EXPECT_EQ(f.window->client()->socket()->peerPort(), second.port());
    EXPECT_EQ(f.node.connections(), 0);
}

TEST(ClusterWindow, TypedLinesEmptyLineAndByeEndInCrLf)
{
    WindowFixture f;
    f.open();
    auto* input = f.child<QLineEdit>("TXTinput");
    QTest::keyClicks(input, "sh/dx 5");
    EXPECT_EQ(input->text(), "SH/DX 5");
    QTest::keyClick(input, Qt::Key_Return);
    EXPECT_TRUE(input->text().isEmpty());
    f.click("cmdConnect");
    f.click("cmdDisconnect");
    EXPECT_TRUE(f.node.waitForReceived("SH/DX 5\r\n\r\nbye\r\n")) << f.node.received().constData();
}

TEST(ClusterWindow, ReceivedTextWithBackspaceAndLineEnds)
{
    WindowFixture f;
    f.open();
    f.node.send("Hello DL1ABC, this is the nodX\bE\r\nline two\rline three\nfour");
    EXPECT_TRUE(f.waitForTerminal("four"));
    EXPECT_EQ(f.terminalText(), "Hello DL1ABC, this is the nodE\nline two\nline three\nfour");
    f.node.send("\b\bur\r\n");
    EXPECT_TRUE(f.waitForTerminal("four\n") || f.terminalText().endsWith("four\n"));
    EXPECT_TRUE(f.terminalText().endsWith("\nfour\n")) << f.terminalText().toStdString();
    EXPECT_EQ(f.child<QPlainTextEdit>("TXTterm")->textCursor().position(),
        f.child<QPlainTextEdit>("TXTterm")->document()->characterCount() - 1);
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
    auto* qrg = f.child<QLineEdit>("QrgD");
    auto* lineD = f.child<QLineEdit>("txtmessageD");
    auto* lineB = f.child<QLineEdit>("txtMessageB");
    EXPECT_EQ(qrg->text(), "144300.0");
    f.child<QLineEdit>("CallD")->setText("DL1ABC");
    f.click("Cmdrefresh");
    EXPECT_EQ(lineD->text(), "dx 144300.0 DL1ABC<Tr>JO62QM");
    EXPECT_EQ(lineB->text(), "dx 144174.0 SP9ABC JO90KA<Tr>JO62QM");

    auto* tags = f.child<OptionGroup>("uSc_MultiOption2");
    clickOption(tags, 2);
    EXPECT_EQ(lineD->text(), "dx 144300.0 DL1ABC<Rs>JO62QM");
    EXPECT_EQ(lineB->text(), "dx 144174.0 SP9ABC JO90KA<Rs>JO62QM");
    EXPECT_EQ(fileLines(f.dir)[26], "2\r");
    clickOption(tags, 3);
    EXPECT_EQ(lineD->text(), "dx 144300.0 DL1ABC<Es>JO62QM");
    EXPECT_EQ(lineB->text(), "dx 144174.0 SP9ABC JO90KA<Es>JO62QM");
    EXPECT_EQ(f.station.settings.intAt(Setting::ClusterOption2), 3);
    EXPECT_EQ(fileLines(f.dir)[26], "3\r");
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
    EXPECT_EQ(f.child<QLineEdit>("txtMessageB")->text(), "dx 50110.0 VK4ABC <Es>JO62QM");

    f.click("cmdSendmessage");
    QByteArray expected = "dx 50110.0 VK4ABC <Es>JO62QM\r\n";
    EXPECT_TRUE(f.node.waitForReceived(expected));

    clickOption(spotChoice, 1);
    EXPECT_EQ(f.station.settings.intAt(Setting::ClusterOption1), 1);
    EXPECT_EQ(fileLines(f.dir)[25], "1\r");
    f.child<QLineEdit>("txtmessageD")->setText("dx 7030.0 K2ABC edited by hand");
    f.click("cmdSendmessage");
    expected += "dx 7030.0 K2ABC edited by hand\r\n";
    EXPECT_TRUE(f.node.waitForReceived(expected)) << f.node.received().constData();
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
    auto* table = f.child<QTableView>("tblSpots");
    ASSERT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 3; }, 5000));
    EXPECT_EQ(table->model()->index(0, 2).data().toString(), "VK4ABC");
    EXPECT_EQ(table->model()->index(2, 1).data().toString(), "14025.0");
    EXPECT_EQ(table->model()->index(1, 5).data().toString(), "2m");

    auto* band = f.child<QComboBox>("cboBand");
    band->setCurrentIndex(band->findText("2m"));
    ASSERT_EQ(table->model()->rowCount(), 1);
    const QModelIndex cell = table->model()->index(0, 2);
    const QPoint at = table->visualRect(cell).center();
    ASSERT_TRUE(table->viewport()->rect().contains(at));
    // An item view takes a double click only after the press that starts it.
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(f.child<QLineEdit>("QrgD")->text(), "144174.0");
    EXPECT_EQ(f.child<QLineEdit>("CallD")->text(), "SP9ABC");
    EXPECT_EQ(f.station.spotQrg, "144174.0");
    EXPECT_EQ(f.station.spotCall, "SP9ABC");
    EXPECT_EQ(tuned, QStringList({ "14417400" }));
    EXPECT_TRUE(f.child<QLineEdit>("txtmessageD")->text().startsWith("dx 144174.0 SP9ABC<Tr>"));

    band->setCurrentIndex(0);
    EXPECT_EQ(table->model()->rowCount(), 3);
    f.click("Initial");
    EXPECT_EQ(settingsOpened, 1);
}

TEST(ClusterWindow, FailedConnectionSaysSoAndTcpReconnects)
{
    WindowFixture f;
    quint16 deadPort = 0;
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        deadPort = probe.serverPort();
    }
    f.pointAt(1, deadPort);
    SaveStationConfig(f.station);
    f.open(false);
    const QString failed = QString("*** Connection to 127.0.0.1:%1 failed").arg(deadPort);
    ASSERT_TRUE(f.waitForTerminal(failed)) << f.terminalText().toStdString();
    EXPECT_TRUE(f.terminalText().contains("Press TCP to reconnect."));
    EXPECT_EQ(f.child<QLabel>("lblState")->text(), "Not connected");

    // Typing while disconnected keeps the line and says why.
    auto* input = f.child<QLineEdit>("TXTinput");
    QTest::keyClicks(input, "sh/dx");
    QTest::keyClick(input, Qt::Key_Return);
    EXPECT_EQ(input->text(), "SH/DX");
    EXPECT_TRUE(f.waitForTerminal("*** Not connected, line not sent. Press TCP to reconnect."));

    f.pointAt(1, f.node.port());
    f.click("cmdTCP");
    EXPECT_TRUE(f.node.waitForClient());
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.window->client()->isConnected(); }, 5000));
    QTest::keyClick(input, Qt::Key_Return);
    EXPECT_TRUE(f.node.waitForReceived("SH/DX\r\n"));
}

TEST(ClusterWindow, DroppedConnectionSaysSoAndExitClosesTheSocket)
{
    WindowFixture f;
    f.open();
    f.node.send("Welcome\r\n");
    f.node.dropClient();
    const QString closed
        = QString("*** Connection to 127.0.0.1:%1 closed. Press TCP to reconnect.").arg(f.node.port());
    ASSERT_TRUE(f.waitForTerminal(closed)) << f.terminalText().toStdString();
    EXPECT_EQ(f.terminalText(), "Welcome\n" + closed + "\n");

    f.click("cmdTCP");
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.node.connections() == 2; }, 5000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.window->client()->isConnected(); }, 5000));
    f.click("cmdExit");
    EXPECT_FALSE(f.window->isVisible());
    EXPECT_FALSE(f.window->client()->isConnected());
    // Opening again runs the load: a new connection.
    f.window->show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.node.connections() == 3; }, 5000));
}
