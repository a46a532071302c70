// Read-outs never outlive their device: kestrel-sim frozen (SIGSTOP) or killed, every read-out
// of the rotator and the sensor box turns unknown within a second, the lamps say why, and the
// values come back after SIGCONT or from a new simulator behind the same device names.
#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "devices/link/QtSerialLink.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"
#include "ui/form1/Compass.h"
#include "ui/form1/Form1.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

#include <csignal>
#include <iostream>

namespace {

// Symbolic links stand for the names udev gives USB adapters (/dev/serial/by-id/...): a new
// device gets a new pseudo-terminal behind the same name.
void pointAt(const TempDir& dir, const SimProcess& sim)
{
    for (const char* device : { "rotator", "sensor" }) {
        const QString link = dir.file(QLatin1String(device) + QStringLiteral(".link"));
        QFile::remove(link);
        ASSERT_TRUE(QFile::link(sim.place(QLatin1String(device)), link)) << device;
    }
}

struct Readouts {
    explicit Readouts(Form1& form)
        : form(form)
    {
    }
    QString text(const char* name) const { return form.findChild<QLabel*>(QLatin1String(name))->text(); }
    QString lamp(int n) const { return form.portLamp(n)->property("state").toString(); }
    const Compass* compass() const { return form.findChild<Compass*>(QStringLiteral("Picture1")); }

    bool allUnknown() const
    {
        return text("Label1") == u"---" && !compass()->heading() && !compass()->isEnabled()
            && text("Label30") == u"Ele = ---" && text("Label31") == u"Temp = ---"
            && text("VCX") == u"Az: ---     Ele: Ele = ---" && !form.elevation()
            && !form.findChild<QLabel*>(QStringLiteral("Label1"))->isEnabled();
    }
    bool allKnown() const
    {
        return text("Label1").size() == 3 && text("Label1") != u"---" && compass()->heading()
            && compass()->isEnabled() && text("Label30").startsWith(u"Ele = ")
            && text("Label30") != u"Ele = ---" && text("Label31").startsWith(u"Temp = ")
            && text("Label31") != u"Temp = ---" && form.elevation() && lamp(3) == u"open"
            && lamp(4) == u"open";
    }
    Form1& form;
};

// Milliseconds until every read-out is unknown; -1 when it took more than 3 s.
int msUntilUnknown(const Readouts& r)
{
    QElapsedTimer t;
    t.start();
    while (!r.allUnknown()) {
        if (t.elapsed() > 3000)
            return -1;
        QTest::qWait(10);
    }
    return int(t.elapsed());
}

} // namespace

TEST(LostDevice, FrozenOrKilledDevicesShowUnknownAndComeBack)
{
    TempDir dir;
    auto sim = std::make_unique<SimProcess>(dir.path());
    ASSERT_TRUE(sim->ready()) << sim->errors().toStdString();
    pointAt(dir, *sim);
    {
        RecordingPrompts quiet;
        Station writer(quiet);
        LoadStationConfig(writer);
        writer.settings.setText(Setting::Com4Port, dir.file("rotator.link"));
        ASSERT_TRUE(SaveStationConfig(writer));
        ExtensionSettings::setValue(ExtensionKey::SensorPort, dir.file("sensor.link"));
    }

    RecordingPrompts prompts;
    Station station(prompts);
    Form1 form(station, makeQtSerialLink);
    form.load();
    const Readouts r(form);
    QTRY_VERIFY_WITH_TIMEOUT(r.allKnown(), 3000);

    // frozen: the ports stay open, the device says nothing
    const auto pid = pid_t(sim->process().processId());
    ASSERT_EQ(::kill(pid, SIGSTOP), 0);
    const int frozen = msUntilUnknown(r);
    ::kill(pid, SIGCONT);
    EXPECT_GE(frozen, 0);
    EXPECT_LE(frozen, 1000);
    EXPECT_TRUE(form.isPortOpen(3) && form.isPortOpen(4));
    EXPECT_EQ(r.lamp(3), QStringLiteral("silent"));
    EXPECT_EQ(r.lamp(4), QStringLiteral("silent"));
    QTRY_VERIFY_WITH_TIMEOUT(r.allKnown(), 1500);

    // killed: the ports vanish, and with them their names (as udev's for an unplugged adapter;
    // the pseudo-terminal numbers may soon belong to another program)
    sim->process().kill();
    sim->process().waitForFinished(3000);
    for (const char* device : { "rotator", "sensor" })
        QFile::remove(dir.file(QLatin1String(device) + QStringLiteral(".link")));
    const int killed = msUntilUnknown(r);
    std::cout << "read-outs unknown after: frozen " << frozen << " ms, killed " << killed << " ms\n";
    EXPECT_GE(killed, 0);
    EXPECT_LE(killed, 1000);
    QTRY_COMPARE_WITH_TIMEOUT(r.lamp(4), QStringLiteral("failed"), 1000);
    EXPECT_EQ(r.lamp(3), QStringLiteral("failed"));
    QTest::qWait(1200); // the lost ports are tried again, quietly, while their names are gone
    EXPECT_TRUE(r.allUnknown());

    // a new device behind the same names is taken up without the settings dialog
    QDir(dir.path()).mkpath(QStringLiteral("second"));
    sim = std::make_unique<SimProcess>(dir.file("second"));
    ASSERT_TRUE(sim->ready()) << sim->errors().toStdString();
    pointAt(dir, *sim);
    QTRY_VERIFY_WITH_TIMEOUT(r.allKnown(), 3000);
    EXPECT_TRUE(prompts.shown.isEmpty()) << prompts.shown.join(u'\n').toStdString();
    form.close();
}
