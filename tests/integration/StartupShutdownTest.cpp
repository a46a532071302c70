// Start-up and shutdown of the program as main() builds it: one message per fault, however
// many windows read the file or the database, and a close or a signal never waits for a box
// and never saves a table that was not loaded to the end. Real program, real files, real signals.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "mapexport/MapViewer.h"
#include "tests/support/TempDir.h"
#include "ui/SignalClose.h"
#include "ui/StationAssembly.h"
#include "ui/form1/Form1.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>
#include <gtest/gtest.h>

#include <csignal>

namespace {

const char* const kMenus[] = { "mnuARLog", "mnuGPS", "mnuInitial", "mnuQSL", "mnuPacket" };

// Kestrel.txt with no serial port in use (the sensor port leads nowhere) and the database in
// the folder; `damage` changes the file's bytes after it is written.
void writeStation(const TempDir& dir, const std::function<void(QByteArray&)>& damage = {})
{
    RecordingPrompts quiet;
    Station writer(quiet);
    LoadStationConfig(writer);
    SettingsTable& t = writer.settings;
    for (int used : { Setting::Com1Used, Setting::Com2Used, Setting::Com3Used, Setting::Com4Used })
        t.setInt16(used, 0);
    t.setText(Setting::MyCall, QStringLiteral("N0CALL"));
    t.setText(Setting::MyLocator, QStringLiteral("JN48TH"));
    t.setText(Setting::Cluster1Host, QStringLiteral("127.0.0.1"));
    t.setText(Setting::Cluster1Port, QStringLiteral("1"));
    ASSERT_TRUE(SaveStationConfig(writer));
    ExtensionSettings::setValue(ExtensionKey::SensorPort, dir.file(QStringLiteral("no-sensor")));
    ExtensionSettings::setValue(ExtensionKey::DatabaseFile, dir.file(QStringLiteral("backup.db")));
    if (damage) {
        QByteArray bytes = dir.read(QStringLiteral("Kestrel.txt"));
        damage(bytes);
        dir.write(QStringLiteral("Kestrel.txt"), bytes);
    }
}

// The first line (CW speed) is no number.
void damageFirstLine(QByteArray& bytes)
{
    bytes.replace(0, bytes.indexOf('\r'), "fast");
}

// An SQLite file of another program where the logbook should be.
void writeForeignDatabase(const TempDir& dir)
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("foreign"));
        db.setDatabaseName(dir.file(QStringLiteral("backup.db")));
        ASSERT_TRUE(db.open());
        QSqlQuery q(db);
        ASSERT_TRUE(q.exec(QStringLiteral("CREATE TABLE photos (id INTEGER, name TEXT)")));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("foreign"));
}

// The station with one start-up fault: a damaged Kestrel.txt or a foreign database.
void writeFaultyStation(const TempDir& dir, bool foreignDatabase)
{
    writeStation(dir, foreignDatabase ? std::function<void(QByteArray&)>() : damageFirstLine);
    if (foreignDatabase)
        writeForeignDatabase(dir);
}

struct Program {
    Program()
        : station(prompts)
    {
        form = std::make_unique<Form1>(station, makeQtSerialLink);
        assembly = std::make_unique<StationAssembly>(*form, station, &viewer);
    }
    // Every window behind the menu opens, as an operator tries them all.
    void openEveryWindow()
    {
        for (const char* menu : kMenus)
            ASSERT_NE(form->showWindow(QLatin1String(menu)), nullptr) << menu;
        QTest::qWait(300);
    }

    RecordingPrompts prompts;
    Station station;
    RecordingMapViewer viewer;
    std::unique_ptr<Form1> form;
    std::unique_ptr<StationAssembly> assembly;
};

// kestrel itself in `dir`, its message boxes written to its error output as they open.
struct RunningKestrel {
    explicit RunningKestrel(const TempDir& dir)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("kestrel.ui.prompts.info=true"));
        env.insert(QStringLiteral("KESTREL_NO_VIEWER"), QStringLiteral("1"));
        process.setProcessEnvironment(env);
        process.setWorkingDirectory(dir.path());
        process.start(qEnvironmentVariable("KESTREL_BUILD_DIR") + QStringLiteral("/app/kestrel"), {});
    }
    ~RunningKestrel()
    {
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished(3000);
        }
    }
    // Waits until a message box is open (or 15 s passed).
    bool boxOpen()
    {
        return QTest::qWaitFor(
            [this] {
                errors += process.readAllStandardError();
                return errors.contains("box:");
            },
            15000);
    }
    // SIGTERM; the milliseconds until the program was gone, or -1 after 2 s.
    qint64 terminate()
    {
        QElapsedTimer clock;
        clock.start();
        ::kill(pid_t(process.processId()), SIGTERM);
        if (!process.waitForFinished(2000))
            return -1;
        errors += process.readAllStandardError();
        return clock.elapsed();
    }

    QProcess process;
    QByteArray errors;
};

} // namespace

// The damaged settings file and a foreign database: one box each, however many windows read them.
TEST(StartupShutdown, EachFaultIsToldOnceWhateverWindowsReadIt)
{
    for (const bool foreignDatabase : { false, true }) {
        SCOPED_TRACE(foreignDatabase ? "foreign database" : "damaged Kestrel.txt");
        TempDir dir;
        writeFaultyStation(dir, foreignDatabase);
        Program p;
        p.form->load();
        p.openEveryWindow();
        p.form->close();
        ASSERT_EQ(p.prompts.shown.size(), 1) << p.prompts.shown.join(" | ").toStdString();
        const QString folder = QDir::toNativeSeparators(QFileInfo(dir.path()).absoluteFilePath());
        EXPECT_TRUE(p.prompts.shown[0].startsWith(foreignDatabase
                ? "The logbook database backup.db in " + folder + " cannot be used: "
                : "Kestrel.txt in " + folder
                    + ": some settings could not be read and their defaults are used.\nline 1: \"fast\" is "
                      "not a whole number"))
            << p.prompts.shown[0].toStdString();
    }
}

TEST(StartupShutdown, SigtermWithABrokenDatabaseEndsWithinTwoSecondsWithoutABox)
{
    TempDir dir;
    writeStation(dir);
    writeForeignDatabase(dir);
    Program p;
    closeOnSignals(*p.form);
    QSignalSpy unloaded(p.form.get(), &Form1::unloaded);
    p.form->load();
    p.form->show();
    QTest::qWait(200);
    // shown, the window also opens the sound input; a test machine has none (a box of its own)
    const qsizetype boxesAtStart = p.prompts.shown.size();
    EXPECT_EQ(p.prompts.shown.filter("The logbook database backup.db in ").size(), 1);

    QElapsedTimer clock;
    clock.start();
    ::raise(SIGTERM);
    ASSERT_TRUE(unloaded.wait(2000));
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_EQ(p.prompts.shown.size(), boxesAtStart) << p.prompts.shown.join(" | ").toStdString();
    EXPECT_TRUE(p.prompts.asked.isEmpty());
}

// The program itself: its start-up box (damaged Kestrel.txt or foreign database) is open when
// TERM comes; it ends within 2 s, with that one box, and Kestrel.txt byte for byte as it was.
TEST(StartupShutdown, SigtermWhileTheStartUpBoxIsOpenLeavesTheFilesAsTheyAreAndEnds)
{
    for (const bool foreignDatabase : { false, true }) {
        SCOPED_TRACE(foreignDatabase ? "foreign database" : "damaged Kestrel.txt");
        TempDir dir;
        writeFaultyStation(dir, foreignDatabase);
        const QByteArray before = dir.read(QStringLiteral("Kestrel.txt"));
        RunningKestrel kestrel(dir);
        ASSERT_TRUE(kestrel.boxOpen()) << kestrel.errors.toStdString();
        const qint64 ms = kestrel.terminate();
        ASSERT_GE(ms, 0) << "still running 2 s after SIGTERM";
        EXPECT_EQ(kestrel.process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(kestrel.process.exitCode(), 0);
        EXPECT_EQ(dir.read(QStringLiteral("Kestrel.txt")), before);
        EXPECT_EQ(kestrel.errors.count("box:"), 1) << kestrel.errors.toStdString();
        EXPECT_EQ(kestrel.errors.contains("The logbook database backup.db in "), foreignDatabase);
        std::cout << "gone " << ms << " ms after SIGTERM\n";
    }
}
