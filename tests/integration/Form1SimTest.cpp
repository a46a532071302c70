// The main window against kestrel-sim: the heading shown follows the simulated rotator, and the
// sensor box's elevation and temperature arrive, all through the simulator's pseudo-terminals.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "tests/support/TempDir.h"
#include "ui/form1/Compass.h"
#include "ui/form1/Form1.h"

#include <QLabel>
#include <QProcess>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class Sim {
public:
    explicit Sim(const QStringList& args)
    {
        process.start(qEnvironmentVariable("KESTREL_BUILD_DIR") + QStringLiteral("/sim/kestrel-sim"), args);
        if (!process.waitForStarted(5000))
            return;
        for (QString line = readLine(); !line.isEmpty(); line = readLine()) {
            if (line == QLatin1String("ready")) {
                ready = true;
                break;
            }
        }
    }
    ~Sim()
    {
        process.terminate();
        if (!process.waitForFinished(3000)) {
            process.kill();
            process.waitForFinished(3000);
        }
    }

    QString readLine(int timeoutMs = 5000)
    {
        QDeadlineTimer deadline(timeoutMs);
        while (!process.canReadLine() && !deadline.hasExpired())
            if (!process.waitForReadyRead(int(std::max<qint64>(1, deadline.remainingTime()))))
                break;
        return QString::fromLocal8Bit(process.readLine()).trimmed();
    }

    // The rotator's heading as the simulator itself reports it.
    double heading()
    {
        process.write("status\n");
        double value = -1;
        for (QString line = readLine(); !line.isEmpty() && line != QLatin1String("end"); line = readLine()) {
            const auto m = QRegularExpression(QStringLiteral("^rotator .*heading=([0-9.]+)")).match(line);
            if (m.hasMatch())
                value = m.captured(1).toDouble();
        }
        return value;
    }

    QProcess process;
    bool ready = false;
};

} // namespace

TEST(Form1Sim, HeadingFollowsTheSimulatedRotator)
{
    TempDir dir;
    Sim sim({ QStringLiteral("--write-config"), dir.path(), QStringLiteral("--rotator-rate"),
        QStringLiteral("30") });
    ASSERT_TRUE(sim.ready) << sim.process.readAllStandardError().constData();

    RecordingPrompts prompts;
    Station station(prompts);
    Form1 form(station, makeQtSerialLink);
    form.load();
    for (int n = 1; n <= 4; ++n)
        ASSERT_TRUE(form.isPortOpen(n)) << n << " " << form.statusBar()->currentMessage().toStdString();
    auto* label1 = form.findChild<QLabel*>(QStringLiteral("Label1"));
    auto* compass = form.findChild<Compass*>(QStringLiteral("Picture1"));
    QTRY_COMPARE_WITH_TIMEOUT(label1->text(), QStringLiteral("000"), 3000);

    // turn as the rotator panel does, then watch the read-back climb to the target
    ASSERT_EQ(form.ports().com(4).write(QByteArray("AP1075\r;")), 8);
    QStringList seen;
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
            if (seen.isEmpty() || seen.last() != label1->text())
                seen << label1->text();
            return label1->text() == QLatin1String("075");
        }(),
        8000);
    int previous = -1;
    for (const QString& s : seen) {
        const int v = s.toInt();
        EXPECT_GE(v, previous) << seen.join(u' ').toStdString();
        previous = v;
    }
    EXPECT_GE(seen.size(), 4) << seen.join(u' ').toStdString(); // it moved through the way, not in one jump
    EXPECT_EQ(compass->heading(), 75);
    EXPECT_NEAR(sim.heading(), 75.0, 0.01);
    EXPECT_TRUE(form.findChild<QLabel*>(QStringLiteral("VCX"))
                    ->text()
                    .startsWith(QStringLiteral("Az: 075     Ele: Ele = ")));

    // the sensor box: elevation between 0.3 and 1.2, temperature around 18
    const QString ele = form.findChild<QLabel*>(QStringLiteral("Label30"))->text();
    ASSERT_TRUE(ele.startsWith(QStringLiteral("Ele = "))) << ele.toStdString();
    EXPECT_GE(ele.mid(6).toDouble(), 0.3);
    EXPECT_LE(ele.mid(6).toDouble(), 1.2);
    const QString temp = form.findChild<QLabel*>(QStringLiteral("Label31"))->text();
    ASSERT_TRUE(temp.startsWith(QStringLiteral("Temp = "))) << temp.toStdString();
    EXPECT_NEAR(temp.mid(7).toInt(), 18, 3);
    EXPECT_TRUE(prompts.shown.isEmpty());
    form.close();
}
