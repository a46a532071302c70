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

struct Expected {
    QStringList args;
    const char* grid;
    const char* lat;
    const char* latHemisphere;
    const char* lon;
};

void runAgainstSim(const Expected& e)
{
    TempDir dir;
    SimProcess sim(dir.path(), e.args);
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();

    RecordingPrompts prompts;
    Station station(prompts);
    Form4 window(station); // reads Kestrel.txt, where the simulator put its receiver on Com3
    auto* command1 = window.findChild<QPushButton*>(QStringLiteral("Command1"));
    command1->click();
    ASSERT_EQ(command1->text(), "&stop") << prompts.shown.join(" | ").toStdString();

    auto* grid = window.findChild<QLabel*>(QStringLiteral("Grid"));
    auto text
        = [&](const char* name) { return window.findChild<QLineEdit*>(QString::fromLatin1(name))->text(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return grid->text() != u"GPS NO FIX"; }, 5000));
    EXPECT_EQ(grid->text(), QString::fromUtf8(e.grid));
    EXPECT_EQ(text("txtMO"), "3D-Fix");
    EXPECT_EQ(text("txtRW"), "A");
    EXPECT_EQ(text("txtLa"), e.lat);
    EXPECT_EQ(text("txtLAD"), e.latHemisphere);
    EXPECT_EQ(text("txtLo2"), e.lon);
    EXPECT_EQ(text("txtQU"), "GPS fix");
    EXPECT_EQ(text("txtALS"), "512");
    EXPECT_EQ(text("txtALSU"), "m");
    EXPECT_FALSE(window.findChild<QLabel*>(QStringLiteral("Image1"))->isHidden());

    // The clock moves on: the next second's burst arrives and is shown.
    const QString first = text("txtUT");
    EXPECT_TRUE(QTest::qWaitFor([&] { return text("txtUT") != first; }, 3000));
}

} // namespace

TEST(GpsSim, TheWindowShowsTheSimulatedFixAndPosition)
{
    runAgainstSim({ {}, "JN48TH   48.312500° N  9.625000° E", "48.3125", "N", "9.625" });
}

TEST(GpsSim, AMultiSystemReceiverInTheSouthWest)
{
    runAgainstSim({ { QStringLiteral("--gps-position"), QStringLiteral("-22.9068,-43.1729"),
                        QStringLiteral("--gps-talker"), QStringLiteral("GN") },
        "GG87JC   22.906800° S  43.172900° W", "22.9068", "S", "43.1729" });
}
