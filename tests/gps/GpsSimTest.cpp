// The GPS window against kestrel-sim's receiver: the port comes from the Kestrel.txt the
// simulator writes, the sentences through its pseudo-terminal, once a second.
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "tests/gps/PrintQString.h"
#include "tests/support/SimProcess.h"
#include "tests/support/TempDir.h"
#include "ui/gps/Form4.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// Runs the simulator with args and expects the window to show its fix at lat/lon (box texts).
void runAgainstSim(
    const QStringList& args, const char* grid, const char* lat, const char* latHemisphere, const char* lon)
{
    TempDir dir;
    SimProcess sim(dir.path(), args);
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();

    RecordingPrompts prompts;
    Station station(prompts);
    Form4 window(station); // reads Kestrel.txt, where the simulator put its receiver on Com3
    auto* command1 = window.findChild<QPushButton*>(QStringLiteral("Command1"));
    command1->click();
    ASSERT_EQ(command1->text(), "&stop") << prompts.shown.join(" | ").toStdString();

    auto* gridLabel = window.findChild<QLabel*>(QStringLiteral("Grid"));
    auto text
        = [&](const char* name) { return window.findChild<QLineEdit*>(QString::fromLatin1(name))->text(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return gridLabel->text() != u"GPS NO FIX"; }, 5000));
    EXPECT_EQ(gridLabel->text(), QString::fromUtf8(grid));
    for (auto [name, value] :
        { std::pair { "txtMO", "3D-Fix" }, { "txtRW", "A" }, { "txtLa", lat }, { "txtLAD", latHemisphere },
            { "txtLo2", lon }, { "txtQU", "GPS fix" }, { "txtALS", "512" }, { "txtALSU", "m" } })
        EXPECT_EQ(text(name), value) << name;
    EXPECT_FALSE(window.findChild<QLabel*>(QStringLiteral("Image1"))->isHidden());

    // The clock moves on: the next second's burst arrives and is shown.
    const QString first = text("txtUT");
    EXPECT_TRUE(QTest::qWaitFor([&] { return text("txtUT") != first; }, 3000));
}

} // namespace

TEST(GpsSim, TheWindowShowsTheSimulatedFixAndPosition)
{
    runAgainstSim({}, "JN48TH   48.312500° N  9.625000° E", "48.3125", "N", "9.625");
}

TEST(GpsSim, AMultiSystemReceiverInTheSouthWest)
{
    runAgainstSim({ "--gps-position", "-22.9068,-43.1729", "--gps-talker", "GN" },
        "GG87JC   22.906800° S  43.172900° W", "22.9068", "S", "43.1729");
}

// Receivers that send their fix before the RMC, paced at their line's speed: the take-over
// button is usable within two seconds of starting; u-blox's four systems are all shown.
TEST(GpsSim, ReceiverProfilesShowTheirFixAndEverySystem)
{
    const struct {
        const char* profile;
        QString used;
    } cases[] = {
        { "mtk", "GPS 2 5 7 9 13 15 20 30" },
        { "sirf", "GPS 2 5 7 9 13 15 20 30" },
        { "ublox",
            "GPS 1 3 5 7 9 11 13 15 17 19 21 23 25\nGLONASS 65 67 69 71 73 75 77 79 81 83 85 87\n"
            "Galileo 1 3 5 7 9 11 13 15 17 19 21 23\nBeiDou 1 3 5 7 9 11 13 15 17 19 21" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.profile);
        TempDir dir;
        SimProcess sim(dir.path(), { "--gps-profile", c.profile });
        ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();
        RecordingPrompts prompts;
        Station station(prompts);
        Form4 window(station);
        auto* take = window.findChild<QPushButton*>(QStringLiteral("cmdMyLocator"));
        window.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
        EXPECT_TRUE(QTest::qWaitFor([&] { return take->isEnabled(); }, 2000));
        auto* used = window.findChild<QLabel*>(QStringLiteral("lblUsedSystems"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return used->text() == c.used; }, 2000))
            << used->text().toStdString();
        EXPECT_EQ(
            window.findChild<QLabel*>(QStringLiteral("Grid"))->text(), "JN48TH   48.312500° N  9.625000° E");
    }
}
