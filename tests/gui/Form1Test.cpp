// The main window's start-up, port notices, menu windows, locator box, weather line and close.
#include "tests/gui/Form1Fixture.h"

#include "geo/Bearing.h"

#include <QAction>
#include <QCloseEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QStatusBar>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>

namespace {

QString lampState(Form1Fixture& f, const char* name)
{
    return f.child<QLabel>(name)->property("state").toString();
}

// Like the logbook: writes its own copy of the callsign back and saves when it closes.
struct StaleCopyWindow : QWidget {
    Station& station;
    StaleCopyWindow(Station& s, QWidget* parent)
        : QWidget(parent)
        , station(s)
    {
    }
    void closeEvent(QCloseEvent* event) override
    {
        station.settings.setText(Setting::MyCall, QStringLiteral("OLDCALL"));
        SaveStationConfig(station);
        QWidget::closeEvent(event);
    }
};

} // namespace

TEST(Form1, StartsWithEveryPortOpenAndGreenLamps)
{
    Form1Fixture f;
    f.writeConfig();
    f.form = std::make_unique<Form1>(f.station, makeQtSerialLink);
    QSignalSpy restored(f.form.get(), &Form1::restoring);
    QSignalSpy loaded(f.form.get(), &Form1::loaded);
    f.form->load();
    EXPECT_TRUE(restored.count() == 1 && loaded.count() == 1);
    for (int n = 1; n <= 4; ++n)
        EXPECT_TRUE(f.form->isPortOpen(n)) << n;
    for (const char* lamp : { "lblCom1", "lblCom2", "lblCom4" })
        EXPECT_EQ(lampState(f, lamp), QStringLiteral("open")) << lamp;
    EXPECT_TRUE(f.form->timer().isActive());
    EXPECT_EQ(f.form->statusBar()->currentMessage(), QString());
    EXPECT_EQ(f.child<QLabel>("Label29")->text(), QStringLiteral("3640"));
    EXPECT_EQ(f.child<QLabel>("Label28")->text(), QStringLiteral("Weather: no address set"));
    EXPECT_TRUE(f.prompts.shown.isEmpty());
}

TEST(Form1, PortFailuresAtStartAreNamedWithoutMessageBoxes)
{
    Form1Fixture f;
    QtSerialLink holder; // another program holds the rotator's port
    ASSERT_TRUE(holder.open(f.rotator.slavePath(), QStringLiteral("4800,n,8,1")));
    f.writeConfig([](SettingsTable& t) {
        t.setText(Setting::Com1Port, QStringLiteral("/dev/kestrel-no-such-port"));
        t.setText(Setting::Com2Settings, QStringLiteral("9600,q,8,1"));
    });
    f.start();
    EXPECT_TRUE(f.prompts.shown.isEmpty()) << f.prompts.shown.join(u'|').toStdString();
    EXPECT_TRUE(f.form->isPortOpen(3));
    for (const char* lamp : { "lblCom1", "lblCom2" })
        EXPECT_EQ(lampState(f, lamp), QStringLiteral("failed")) << lamp;
    EXPECT_EQ(lampState(f, "lblCom4"), QStringLiteral("busy"));

    const QString status = f.form->statusBar()->currentMessage();
    for (const char* part : { "Com1 (rig 1) not open: /dev/kestrel-no-such-port: no such port",
             "Com2 (rig 2) not open", "9600,q,8,1", "Com4 (rotator) not open", "busy" })
        EXPECT_TRUE(status.contains(QLatin1String(part))) << status.toStdString();
    EXPECT_TRUE(f.child<QLabel>("lblCom1")->toolTip().contains(QStringLiteral("no such port")));

    // everything else works: the sensor is asked and read
    ASSERT_TRUE(f.tickWith(sensorReply(400, 12)));
    EXPECT_EQ(f.child<QLabel>("Label31")->text(), QStringLiteral("Temp = 12"));
}

TEST(Form1, ActivationShowsThePortNumbers)
{
    Form1Fixture f;
    f.writeConfig([](SettingsTable& t) {
        t.setText(Setting::Com2Port, QStringLiteral("/dev/kestrel-none"));
        t.setInt16(Setting::Com1Used, 0);
        t.setText(Setting::Com1Port, QStringLiteral("10"));
    });
    f.start();
    QSignalSpy activated(f.form.get(), &Form1::activated);
    f.form->activate();
    EXPECT_EQ(activated.count(), 1);
    EXPECT_EQ(f.child<QLabel>("lblCom1")->text(), QStringLiteral("Com1 PortNr: 10 "));
    EXPECT_EQ(f.child<QLabel>("lblCom2")->text(), QStringLiteral("Com2 PortNr: /dev/kestrel-none "));
    EXPECT_EQ(
        f.child<QLabel>("lblCom4")->text(), QStringLiteral("Com4 PortNr: ") + f.rotator.slavePath() + " ");
    EXPECT_EQ(lampState(f, "lblCom1"), QStringLiteral("off"));
}

TEST(Form1, AMenuEntryOpenedTwiceShowsOneInstance)
{
    Form1Fixture f;
    f.writeConfig();
    f.form = std::make_unique<Form1>(f.station, makeQtSerialLink);
    int made = 0;
    f.form->registerWindow(QStringLiteral("mnuQSL"), [&](QWidget* parent) {
        ++made;
        return new QWidget(parent);
    });
    // the logbook's window object is made at start, without showing
    f.form->registerWindow(QStringLiteral("mnuARLog"), [&](QWidget* parent) {
        f.station.dbConnection = QStringLiteral("set by the logbook");
        return new QWidget(parent);
    });
    f.form->load();
    f.form->timer().stop();
    EXPECT_EQ(f.station.dbConnection, QStringLiteral("set by the logbook"));
    EXPECT_FALSE(f.form->windowInstance(QStringLiteral("mnuARLog"))->isVisible());
    EXPECT_EQ(f.form->windowInstance(QStringLiteral("mnuGPS")), nullptr);

    QAction* entry = f.child<QAction>("mnuQSL");
    entry->trigger();
    QWidget* first = f.form->windowInstance(QStringLiteral("mnuQSL"));
    ASSERT_TRUE(first && first->isVisible() && first->isWindow());
    first->close();
    entry->trigger();
    EXPECT_EQ(f.form->windowInstance(QStringLiteral("mnuQSL")), first);
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(made, 1);

    // a window nobody has built yet is an empty placeholder, also made once
    f.child<QAction>("mnuGPS")->trigger();
    QWidget* gps = f.form->windowInstance(QStringLiteral("mnuGPS"));
    ASSERT_NE(gps, nullptr);
    EXPECT_EQ(gps->windowTitle(), QStringLiteral("GPS"));
    f.child<QAction>("mnuGPS")->trigger();
    EXPECT_EQ(f.form->windowInstance(QStringLiteral("mnuGPS")), gps);
}

TEST(Form1, ClosingSavesTheSettingsAlthoughNothingChanged)
{
    Form1Fixture f;
    f.writeConfig();
    f.start();
    QFile::remove(f.dir.file(QStringLiteral("Kestrel.txt")));
    QSignalSpy query(f.form.get(), &Form1::queryUnload);
    QSignalSpy gone(f.form.get(), &Form1::unloaded);
    // a panel writes its state back before the save
    auto* panel = new QLabel(QStringLiteral("keyer"));
    f.form->placePanel(Form1::Area::Keyer, panel);
    EXPECT_EQ(panel->parentWidget(), f.child<QGroupBox>("keyerBox"));
    QObject::connect(f.form.get(), &Form1::writingBack,
        [&] { f.station.settings.setText(Setting::CwText1, QStringLiteral("vvv de n0call")); });
    f.form->close();
    EXPECT_TRUE(query.count() == 1 && gone.count() == 1);
    const QList<QByteArray> lines = f.configLines();
    ASSERT_EQ(lines.size(), 47);
    EXPECT_EQ(lines[3], QByteArray("\"vvv de n0call\""));
    EXPECT_EQ(lines[5], QByteArray("\"N0CALL\""));
    for (int n = 1; n <= 4; ++n)
        EXPECT_FALSE(f.form->isPortOpen(n)) << n;
    EXPECT_FALSE(f.form->timer().isActive());
}

TEST(Form1, StartSetsHomeCoordinatesAndExitWinsOverOtherWindowsWriteBacks)
{
    Form1Fixture f;
    f.writeConfig([](SettingsTable& t) { t.setText(Setting::LogbookText, QStringLiteral("144%")); });
    f.form = std::make_unique<Form1>(f.station, makeQtSerialLink);
    f.form->registerWindow(
        QStringLiteral("mnuARLog"), [&](QWidget* parent) { return new StaleCopyWindow(f.station, parent); });
    f.form->load();
    f.form->timer().stop();
    // JN48TH: 9 7/12 east, 48 7/24 north
    EXPECT_TRUE(f.station.homeCoords.startsWith(QStringLiteral("9.58333")))
        << f.station.homeCoords.toStdString();
    EXPECT_EQ(f.station.bandPattern, QStringLiteral("144%"));

    f.station.myCall = QStringLiteral("DL0NEW"); // as the settings dialog leaves it
    f.station.bandPattern = QStringLiteral("432%");
    f.form->close();
    const QList<QByteArray> lines = f.configLines();
    ASSERT_EQ(lines.size(), 47);
    EXPECT_EQ(lines[5], QByteArray("\"DL0NEW\""));
    EXPECT_EQ(lines[32], QByteArray("\"432%\""));
}

TEST(Form1, LocatorBoxShowsBearingAndDistance)
{
    Form1Fixture f;
    f.writeConfig();
    f.start();
    f.form->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(f.form.get()));
    auto* locator = f.child<QLineEdit>("Locator");
    locator->setFocus();
    QTest::keyClicks(locator, QStringLiteral("JO31"));
    QTest::keyClick(locator, Qt::Key_Return);

    EXPECT_EQ(locator->text(), QStringLiteral("JO31HH"));
    const BearingOutcome expected = ShowBearingAndDistance(f.station, QStringLiteral("JO31HH"));
    const auto shown = [&] {
        return f.child<QLineEdit>("Richtung")->text() + " | " + f.child<QLineEdit>("Text160")->text();
    };
    EXPECT_TRUE(expected.line.startsWith(QStringLiteral("JN48TH -> JO31HH QTF: ")));
    EXPECT_EQ(shown(), expected.line + " | " + QString::number(expected.wholeDegrees));
    // Enter hands on to the azimuth box; the operation itself gives the focus back
    EXPECT_EQ(QApplication::focusWidget(), f.child<QLineEdit>("Text160"));
    EXPECT_TRUE(f.form->showBearingAndDistance());
    EXPECT_EQ(QApplication::focusWidget(), locator);
    EXPECT_TRUE(f.prompts.shown.isEmpty());

    // a field letter beyond R is refused and the last result stays
    const QString before = shown();
    locator->setText(QStringLiteral("JS31"));
    QTest::keyClick(locator, Qt::Key_Return);
    EXPECT_EQ(f.prompts.shown, QStringList { QStringLiteral("Invalid Gridlocator:") });
    EXPECT_EQ(locator->text(), QStringLiteral("JS31HH"));
    EXPECT_EQ(shown(), before);
    EXPECT_EQ(QApplication::focusWidget(), locator);
}

namespace {

// Answers HTTP requests with `body` and remembers the request.
class PageServer : public QTcpServer {
public:
    explicit PageServer(QByteArray body)
    {
        connect(this, &QTcpServer::newConnection, this, [this, body] {
            QTcpSocket* s = nextPendingConnection();
            connect(s, &QTcpSocket::readyRead, s, [this, s, body] {
                request += s->readAll();
                if (!request.contains("\r\n\r\n"))
                    return;
                s->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: "
                    + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
                s->disconnectFromHost();
            });
        });
        listen(QHostAddress::LocalHost, 0);
    }
    QByteArray request;
};

} // namespace

TEST(Form1, WeatherLineComesFromTheSummaryPageWithoutDelayingTheStart)
{
    const auto weather = [](Form1Fixture& f) { return f.child<QLabel>("Label28")->text(); };
    {
        Form1Fixture f;
        f.writeConfig();
        quint16 refusing = 0;
        {
            QTcpServer closed;
            closed.listen(QHostAddress::LocalHost, 0);
            refusing = closed.serverPort();
        }
        ExtensionSettings::setValue(
            ExtensionKey::WeatherUrl, QStringLiteral("http://127.0.0.1:%1/").arg(refusing));
        f.start();
        QTRY_VERIFY_WITH_TIMEOUT(weather(f).startsWith(QStringLiteral("Weather: not available")), 5000);
        EXPECT_TRUE(f.prompts.shown.isEmpty());
    }
    Form1Fixture f;
    f.writeConfig();
    PageServer server("<table><tr><td>Outside Humidity</td><td>85%</td></tr>"
                      "<tr><td>Dew Point</td><td>10.2&nbsp;C</td></tr>"
                      "<tr><td>Barometer</td><td>1013.2 hPa</td></tr>"
                      "<tr><td>Average Wind Speed</td><td>3 km/h</td></tr></table>");
    ExtensionSettings::setValue(ExtensionKey::WeatherUrl,
        QStringLiteral("http://127.0.0.1:%1/station/summary.htm").arg(server.serverPort()));
    f.start();
    EXPECT_EQ(weather(f), QStringLiteral("Weather: fetching ..."));
    QTRY_COMPARE_WITH_TIMEOUT(weather(f), QStringLiteral("85% : 10.2 C : 1013.2 hPa : 3 km/h"), 5000);
    EXPECT_TRUE(server.request.startsWith("GET /station/summary.htm?view=summary&headers=0 HTTP/1.1"))
        << server.request.constData();
}

TEST(Form1, AnotherPartsStatusMessageStaysWhenThePortsAreFine)
{
    Form1Fixture f;
    f.writeConfig();
    f.form = std::make_unique<Form1>(f.station, makeQtSerialLink);
    QObject::connect(f.form.get(), &Form1::loaded,
        [&] { f.form->statusBar()->showMessage(QStringLiteral("key line: no such GPIO chip")); });
    f.form->load();
    f.form->closePort(2);
    EXPECT_EQ(f.form->statusBar()->currentMessage(), QStringLiteral("key line: no such GPIO chip"));
}
