// The GPS window with gpsd as its source: Debian's gpsd reads kestrel-sim's receiver on its
// pseudo-terminal and serves 127.0.0.1 only; the window shows the fix from gpsd's NMEA, says so
// when gpsd goes away, and takes up again when it is back.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"
#include "ui/StationAssembly.h"
#include "ui/form1/Form1.h"
#include "ui/gps/Form4.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTcpServer>
#include <QTest>
#include <gtest/gtest.h>

namespace {
quint16 freePort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost, 0);
    return probe.serverPort();
}

struct Gpsd {
    Gpsd(const TempDir& dir, quint16 port, const QString& device)
    {
        process.setProcessChannelMode(QProcess::MergedChannels);
        // -b: read only, the simulated receiver is not reconfigured; -n: read without a client.
        process.start(QStringLiteral("gpsd"),
            { "-N", "-n", "-b", "-S", QString::number(port), "-F", dir.file("gpsd.sock"), device });
        EXPECT_TRUE(process.waitForStarted(5000));
    }
    ~Gpsd() { stop(); }
    void stop()
    {
        if (process.state() == QProcess::NotRunning)
            return;
        process.terminate();
        if (!process.waitForFinished(5000))
            process.kill();
        process.waitForFinished(2000);
    }
    QProcess process;
};
} // namespace

TEST(GpsdSim, TheGpsWindowShowsTheFixFromGpsdAndOutlivesIt)
{
    TempDir dir;
    SimProcess sim(dir.path());
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();
    const quint16 port = freePort();
    auto gpsd = std::make_unique<Gpsd>(dir, port, sim.place(QStringLiteral("gps")));

    ExtensionSettings::setValue(ExtensionKey::DatabaseFile, dir.file("backup.db"));
    ExtensionSettings::setValue(ExtensionKey::GpsSource, QStringLiteral("gpsd"));
    ExtensionSettings::setValue(ExtensionKey::GpsdPort, QString::number(port));
    RecordingPrompts prompts;
    Station station(prompts);
    Form1 form(station, makeQtSerialLink);
    StationAssembly assembly(form, station);
    form.load();
    auto* gps = qobject_cast<Form4*>(form.showWindow(QStringLiteral("mnuGPS")));
    ASSERT_NE(gps, nullptr);
    auto* grid = gps->findChild<QLabel*>(QStringLiteral("Grid"));
    auto* log = gps->findChild<QPlainTextEdit*>(QStringLiteral("Text1"));
    const QString place = QStringLiteral("gpsd 127.0.0.1:%1").arg(port);

    // gpsd may still be starting: the window tries again until it answers.
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid->text() != u"GPS NO FIX"; }, 30000))
        << log->toPlainText().toStdString() << gpsd->process.readAll().toStdString();
    EXPECT_EQ(grid->text(), QStringLiteral("JN48TH   48.312500° N  9.625000° E"));
    EXPECT_TRUE(log->toPlainText().contains(place + QStringLiteral(" connected")));

    gpsd->stop();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return log->toPlainText().contains(place + QStringLiteral(" gone")); }, 5000))
        << log->toPlainText().toStdString();
    gpsd = std::make_unique<Gpsd>(dir, port, sim.place(QStringLiteral("gps")));
    const int connections = log->toPlainText().count(place + QStringLiteral(" connected"));
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return log->toPlainText().count(place + QStringLiteral(" connected")) > connections; }, 20000))
        << log->toPlainText().toStdString();
    EXPECT_TRUE(prompts.shown.isEmpty()) << prompts.shown.join(" | ").toStdString();
}
