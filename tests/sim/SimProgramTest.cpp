// kestrel-sim as a program: started, its settings file and cluster port used, and stopped,
// leaving nothing behind.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"

#include <QDir>
#include <QFileInfo>
#include <QTcpSocket>
#include <QTest>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <sys/stat.h>

namespace {

// The change time of a device node, to tell a pseudo-terminal from a later one of the same name.
qint64 changeTime(const QString& path)
{
    struct stat st { };
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return -1;
    return qint64(st.st_ctim.tv_sec) * 1000000000 + st.st_ctim.tv_nsec;
}

// Reads until `what` has come (or three seconds passed); returns everything read.
QByteArray readUntil(const std::function<QByteArray()>& read, const QByteArray& what)
{
    QByteArray got;
    (void)QTest::qWaitFor(
        [&] {
            got += read();
            return got.contains(what);
        },
        3000);
    return got;
}

} // namespace

TEST(SimProgram, PrintsItsDevicesAndStateAndLeavesNothingBehindOnSigtermOrSigint)
{
    for (int signal : { SIGTERM, SIGINT }) {
        SimProcess sim;
        ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();
        EXPECT_EQ(
            sim.places().keys(), (QStringList { "cluster", "gps", "rig", "rig2", "rotator", "sensor" }));
        QMap<QString, qint64> created;
        for (const char* name : { "rig", "rig2", "rotator", "sensor", "gps" }) {
            EXPECT_TRUE(sim.place(name).startsWith(QStringLiteral("/dev/pts/"))) << name;
            created[name] = changeTime(sim.place(name));
            EXPECT_GT(created[name], 0);
        }
        EXPECT_TRUE(sim.place("cluster").startsWith(QStringLiteral("127.0.0.1:")));

        const pid_t pid = pid_t(sim.process().processId());
        ::kill(pid, SIGUSR1); // the state of each device, then "end"
        QStringList lines;
        for (QString line = sim.readLine(); !line.isEmpty() && line != QLatin1String("end");
             line = sim.readLine())
            lines << line.section(QLatin1Char(' '), 0, 0);
        EXPECT_EQ(lines, (QStringList { "rig", "rig2", "rotator", "sensor", "gps", "cluster" }));

        ::kill(pid, signal);
        ASSERT_TRUE(sim.process().waitForFinished(5000));
        EXPECT_TRUE(sim.stop()) << "normal exit, code 0, after signal " << signal;
        EXPECT_EQ(::kill(pid, 0), -1);
        EXPECT_EQ(errno, ESRCH);
        for (auto it = created.begin(); it != created.end(); ++it) // gone, or another program's new one
            EXPECT_NE(changeTime(sim.place(it.key())), it.value()) << it.key().toStdString();
    }
}

TEST(SimProgram, RefusesAWrongOption)
{
    QProcess p;
    p.start(SimProcess::program(), { QStringLiteral("--gps-position"), QStringLiteral("north") });
    ASSERT_TRUE(p.waitForFinished(5000));
    EXPECT_EQ(p.exitCode(), 2);
    EXPECT_TRUE(
        p.readAllStandardError().startsWith("kestrel-sim: --gps-position \"north\": expected LAT,LON"));
    EXPECT_EQ(p.readAllStandardOutput(), QByteArray());
}

TEST(SimProgram, WritesASettingsFilePointingAtItsDevices)
{
    TempDir dir;
    auto sim = std::make_unique<SimProcess>(dir.path());
    ASSERT_TRUE(sim->ready()) << sim->errors().toStdString();
    EXPECT_EQ(sim->place("config"), QFileInfo(dir.path()).absoluteFilePath());

    const QList<QByteArray> lines = dir.read(QStringLiteral("Kestrel.txt")).split('\n');
    EXPECT_EQ(lines.size(), 48); // 47 lines, each ended by CR LF
    const auto quoted = [](const QString& s) { return ('"' + s + "\"\r").toLocal8Bit(); };
    const std::pair<int, QString> expected[] = { { 5, "N0CALL" }, { 6, "JN48TH" }, { 8, sim->place("rig") },
        { 11, sim->place("rig2") }, { 14, sim->place("gps") }, { 17, sim->place("rotator") },
        { 20, "127.0.0.1" }, { 21, sim->place("cluster").section(QLatin1Char(':'), 1) } };
    for (const auto& [index, text] : expected)
        EXPECT_EQ(lines[index], quoted(text)) << index;

    RecordingPrompts prompts;
    Station station(prompts);
    LoadStationConfig(station);
    EXPECT_TRUE(prompts.shown.isEmpty()) << prompts.shown.join(' ').toStdString();
    EXPECT_EQ(station.settings.intAt(Setting::Com4Used), 1);
    EXPECT_EQ(station.settings.intAt(Setting::ClusterChoice), 1);
    EXPECT_EQ(ExtensionSettings::value(ExtensionKey::SensorPort), sim->place("sensor"));

    // A second run keeps the operator's own call and takes the new device paths.
    EXPECT_TRUE(sim->stop());
    station.settings.setText(Setting::MyCall, QStringLiteral("DL9ABC"));
    ASSERT_TRUE(SaveStationConfig(station));
    sim = std::make_unique<SimProcess>(dir.path());
    ASSERT_TRUE(sim->ready());
    LoadStationConfig(station);
    EXPECT_EQ(station.settings.textAt(Setting::MyCall), QStringLiteral("DL9ABC"));
    EXPECT_EQ(station.settings.textAt(Setting::Com1Port), sim->place("rig"));
}

TEST(SimProgram, LeavesADamagedSettingsFileAsItIsAndSaysWhy)
{
    TempDir dir;
    const QByteArray damaged = "fast\r\n-1\r\n0\r\n\"cq\"\r\n\"tu\"\r\n\"N0CALL\"\r\n\"JN48TH\"\r\n";
    dir.write(QStringLiteral("Kestrel.txt"), damaged);
    QProcess p;
    p.start(SimProcess::program(), { QStringLiteral("--write-config"), dir.path() });
    ASSERT_TRUE(p.waitForFinished(10000));
    EXPECT_NE(p.exitCode(), 0);
    const QString errors = QString::fromLocal8Bit(p.readAllStandardError());
    EXPECT_TRUE(errors.contains("kestrel-sim: " + QDir(dir.path()).absoluteFilePath("Kestrel.txt")
        + " is left as it is; repair or remove it first. Kestrel.txt in "))
        << errors.toStdString();
    EXPECT_TRUE(errors.contains("line 1: \"fast\" is not a whole number"));
    EXPECT_EQ(dir.read(QStringLiteral("Kestrel.txt")), damaged);
    EXPECT_FALSE(QFile::exists(dir.file(QStringLiteral("Kestrel.ini"))));
}

// The serial devices are driven end to end by the main, rig, rotator and GPS window tests;
// the cluster node here, and the "quit" command.
TEST(SimProgram, ClusterNodeGreetsSpotsAndClosesOnBye)
{
    SimProcess sim;
    ASSERT_TRUE(sim.ready());
    QTcpSocket cluster;
    cluster.connectToHost(QStringLiteral("127.0.0.1"), sim.place("cluster").section(':', 1).toUShort());
    const auto read = [&] { return cluster.readAll(); };
    EXPECT_TRUE(readUntil(read, "login: ").endsWith("login: "));
    cluster.write("N0CALL\r\n");
    EXPECT_TRUE(readUntil(read, "DX de ").contains("DX de "));
    cluster.write("bye\r\n");
    EXPECT_TRUE(QTest::qWaitFor([&] { return cluster.state() == QAbstractSocket::UnconnectedState; }, 3000));
    EXPECT_TRUE(sim.status()["cluster"].contains(QStringLiteral(" connections=0 ")));

    sim.process().write("quit\n");
    ASSERT_TRUE(sim.process().waitForFinished(5000));
    EXPECT_EQ(sim.process().exitCode(), 0);
}
