// kestrel-sim as a program: started, talked to through its pseudo-terminals and its TCP port
// with the station's own serial link, and stopped, leaving nothing behind.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "tests/support/TempDir.h"

#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QTcpSocket>
#include <QTest>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <sys/stat.h>

namespace {

QString simPath()
{
    return qEnvironmentVariable("KESTREL_BUILD_DIR") + QStringLiteral("/sim/kestrel-sim");
}

// The change time of a device node, to tell a pseudo-terminal from a later one of the same name.
qint64 changeTime(const QString& path)
{
    struct stat st { };
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return -1;
    return qint64(st.st_ctim.tv_sec) * 1000000000 + st.st_ctim.tv_nsec;
}

class Sim {
public:
    explicit Sim(const QStringList& args = {})
    {
        process.start(simPath(), args);
        started = process.waitForStarted(5000);
        for (QString line = readLine(); started && !line.isEmpty(); line = readLine()) {
            if (line == QLatin1String("ready")) {
                ready = true;
                break;
            }
            const int eq = line.indexOf(QLatin1Char('='));
            places.insert(line.left(eq), line.mid(eq + 1));
        }
    }
    ~Sim()
    {
        if (process.state() != QProcess::NotRunning) {
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

    // Asks for the state lines and returns them by device name.
    QMap<QString, QString> status()
    {
        process.write("status\n");
        QMap<QString, QString> state;
        for (QString line = readLine(); !line.isEmpty() && line != QLatin1String("end"); line = readLine())
            state.insert(line.section(QLatin1Char(' '), 0, 0), line.section(QLatin1Char(' '), 1));
        return state;
    }

    QProcess process;
    bool started = false;
    bool ready = false;
    QMap<QString, QString> places;
};

QByteArray readFromLink(SerialLink& link, int count, int timeoutMs = 3000)
{
    QByteArray got;
    (void)QTest::qWaitFor(
        [&] {
            got += link.readAll();
            return got.size() >= count;
        },
        timeoutMs);
    return got;
}

} // namespace

TEST(SimProgram, PrintsWhereItsDevicesAreAndStopsOnSigterm)
{
    Sim sim;
    ASSERT_TRUE(sim.ready) << sim.process.readAllStandardError().constData();
    EXPECT_EQ(sim.places.keys(), (QStringList { "cluster", "gps", "rig", "rig2", "rotator", "sensor" }));
    QMap<QString, qint64> created;
    for (const char* name : { "rig", "rig2", "rotator", "sensor", "gps" }) {
        EXPECT_TRUE(sim.places[name].startsWith(QStringLiteral("/dev/pts/"))) << name;
        created[name] = changeTime(sim.places[name]);
        EXPECT_GT(created[name], 0);
    }
    EXPECT_TRUE(sim.places["cluster"].startsWith(QStringLiteral("127.0.0.1:")));

    const qint64 pid = sim.process.processId();
    sim.process.terminate(); // SIGTERM
    ASSERT_TRUE(sim.process.waitForFinished(5000));
    EXPECT_EQ(sim.process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(sim.process.exitCode(), 0);
    EXPECT_EQ(::kill(pid_t(pid), 0), -1);
    EXPECT_EQ(errno, ESRCH);
    for (auto it = created.begin(); it != created.end(); ++it) // gone, or another program's new one
        EXPECT_NE(changeTime(sim.places[it.key()]), it.value()) << it.key().toStdString();
}

TEST(SimProgram, StopsOnSigintAndPrintsStateOnSigusr1)
{
    Sim sim;
    ASSERT_TRUE(sim.ready);
    ::kill(pid_t(sim.process.processId()), SIGUSR1);
    QStringList lines;
    for (QString line = sim.readLine(); !line.isEmpty() && line != QLatin1String("end");
         line = sim.readLine())
        lines << line.section(QLatin1Char(' '), 0, 0);
    EXPECT_EQ(lines, (QStringList { "rig", "rig2", "rotator", "sensor", "gps", "cluster" }));

    const QString rig = sim.places["rig"];
    const qint64 created = changeTime(rig);
    ::kill(pid_t(sim.process.processId()), SIGINT);
    ASSERT_TRUE(sim.process.waitForFinished(5000));
    EXPECT_EQ(sim.process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(sim.process.exitCode(), 0);
    EXPECT_NE(changeTime(rig), created);
}

TEST(SimProgram, RefusesAWrongOption)
{
    QProcess p;
    p.start(simPath(), { QStringLiteral("--gps-position"), QStringLiteral("north") });
    ASSERT_TRUE(p.waitForFinished(5000));
    EXPECT_EQ(p.exitCode(), 2);
    EXPECT_TRUE(
        p.readAllStandardError().startsWith("kestrel-sim: --gps-position \"north\": expected LAT,LON"));
    EXPECT_EQ(p.readAllStandardOutput(), QByteArray());
}

TEST(SimProgram, WritesASettingsFilePointingAtItsDevices)
{
    TempDir dir;
    Sim sim({ QStringLiteral("--write-config"), dir.path() });
    ASSERT_TRUE(sim.ready) << sim.process.readAllStandardError().constData();
    EXPECT_EQ(sim.places["config"], QFileInfo(dir.path()).absoluteFilePath());

    const QList<QByteArray> lines = dir.read(QStringLiteral("Kestrel.txt")).split('\n');
    EXPECT_EQ(lines.size(), 48); // 47 lines, each ended by CR LF
    const auto quoted = [](const QString& s) { return ('"' + s + "\"\r").toLocal8Bit(); };
    EXPECT_EQ(lines[5], quoted("N0CALL"));
    EXPECT_EQ(lines[6], quoted("JN48TH"));
    EXPECT_EQ(lines[8], quoted(sim.places["rig"]));
    EXPECT_EQ(lines[11], quoted(sim.places["rig2"]));
    EXPECT_EQ(lines[14], quoted(sim.places["gps"]));
    EXPECT_EQ(lines[17], quoted(sim.places["rotator"]));
    EXPECT_EQ(lines[20], quoted("127.0.0.1"));
    EXPECT_EQ(lines[21], quoted(sim.places["cluster"].section(QLatin1Char(':'), 1)));

    RecordingPrompts prompts;
    Station station(prompts);
    LoadStationConfig(station);
    EXPECT_TRUE(prompts.shown.isEmpty()) << prompts.shown.join(' ').toStdString();
    EXPECT_EQ(station.settings.intAt(Setting::Com4Used), 1);
    EXPECT_EQ(station.settings.intAt(Setting::ClusterChoice), 1);
    EXPECT_EQ(ExtensionSettings::value(ExtensionKey::SensorPort), sim.places["sensor"]);

    // A second run keeps the operator's own call and takes the new device paths.
    sim.process.terminate();
    ASSERT_TRUE(sim.process.waitForFinished(5000));
    station.settings.setText(Setting::MyCall, QStringLiteral("DL9ABC"));
    ASSERT_TRUE(SaveStationConfig(station));
    Sim again({ QStringLiteral("--write-config"), dir.path() });
    ASSERT_TRUE(again.ready);
    LoadStationConfig(station);
    EXPECT_EQ(station.settings.textAt(Setting::MyCall), QStringLiteral("DL9ABC"));
    EXPECT_EQ(station.settings.textAt(Setting::Com1Port), again.places["rig"]);
}

TEST(SimProgram, EachDeviceAnswersThroughItsPort)
{
    Sim sim({ QStringLiteral("--rotator-rate"), QStringLiteral("20"), QStringLiteral("--gps-position"),
        QStringLiteral("51.5,-0.125") });
    ASSERT_TRUE(sim.ready);
    const QString settings = QStringLiteral("9600,n,8,1");

    QtSerialLink rig;
    ASSERT_TRUE(rig.open(sim.places["rig"], settings)) << rig.errorText().toStdString();
    rig.write(QByteArray::fromHex("1441000001") + "MD03;TX1;");
    QtSerialLink rig2;
    ASSERT_TRUE(rig2.open(sim.places["rig2"], settings));
    rig2.write(QByteArray("5020000") + QByteArray::fromHex("0502000001") + QByteArray::fromHex("0200000007"));

    QtSerialLink rotator;
    ASSERT_TRUE(rotator.open(sim.places["rotator"], QStringLiteral("4800,n,8,1")));
    rotator.write("AI1;");
    EXPECT_EQ(readFromLink(rotator, 4), QByteArray("000;"));
    rotator.write(QByteArray("AP1030\r;"));
    QByteArray heading;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            rotator.write("AI1;");
            QTest::qWait(100);
            heading = rotator.readAll().right(4);
            return heading == "030;";
        },
        5000))
        << heading.constData();

    QtSerialLink sensor;
    ASSERT_TRUE(sensor.open(sim.places["sensor"], settings));
    sensor.write(QByteArray("\x7f\x01\x87", 3));
    const QString hex = QString::fromLatin1(readFromLink(sensor, 16).toHex().toUpper());
    ASSERT_EQ(hex.size(), 32);
    const int elevation = hex.mid(22, 4).toInt(nullptr, 16);
    EXPECT_GE(elevation, 300);
    EXPECT_LE(elevation, 1200);
    EXPECT_EQ(hex.mid(30, 2).toInt(nullptr, 16), 18);

    QtSerialLink gps;
    ASSERT_TRUE(gps.open(sim.places["gps"], QStringLiteral("4800,n,8,1")));
    QByteArray nmea;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            nmea += gps.readAll();
            return nmea.contains("$GPGSV,3,3");
        },
        3000));
    EXPECT_TRUE(nmea.contains(",A,5130.0000,N,00007.5000,W,")) << nmea.constData();

    QTcpSocket cluster;
    cluster.connectToHost(
        QStringLiteral("127.0.0.1"), sim.places["cluster"].section(QLatin1Char(':'), 1).toUShort());
    QByteArray text;
    const auto waitFor = [&](const QByteArray& what) {
        return QTest::qWaitFor(
            [&] {
                text += cluster.readAll();
                return text.contains(what);
            },
            3000);
    };
    EXPECT_TRUE(waitFor("login: "));
    cluster.write("N0CALL\r\n");
    EXPECT_TRUE(waitFor("DX de "));
    cluster.write("bye\r\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return cluster.state() == QAbstractSocket::UnconnectedState; }, 3000));

    const QMap<QString, QString> state = sim.status();
    EXPECT_TRUE(state["rig"].startsWith(QStringLiteral("frequency=144100000 mode=CW tx=1 ")))
        << state["rig"].toStdString();
    EXPECT_TRUE(state["rig2"].startsWith(QStringLiteral("frequency=50200000 mode=CW tx=0 ")));
    EXPECT_TRUE(state["rig2"].endsWith(QStringLiteral("refused=0 plain=5020000")));
    EXPECT_TRUE(state["rotator"].startsWith(QStringLiteral("heading=30.0 target=30 motion=stopped")));
    EXPECT_TRUE(state["sensor"].endsWith(QStringLiteral("replies=1")));
    EXPECT_TRUE(state["gps"].startsWith(QStringLiteral("latitude=51.500000 longitude=-0.125000 fix=3D")));
    EXPECT_TRUE(state["cluster"].contains(QStringLiteral(" connections=0 ")));

    sim.process.write("quit\n");
    ASSERT_TRUE(sim.process.waitForFinished(5000));
    EXPECT_EQ(sim.process.exitCode(), 0);
}
