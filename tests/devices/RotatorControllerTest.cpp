#include "devices/rotator/RotatorController.h"
#include "StationRig.h"

#include <QTest>
#include <gtest/gtest.h>

using namespace std::chrono;

namespace {
struct RotatorRig : StationRig {
    std::unique_ptr<RotatorController> rotator = std::make_unique<RotatorController>(station, ports, lines);
    RotatorRig() { open(4); }
};

double lengthMs(const RecordingLine::Edge& on, const RecordingLine::Edge& off)
{
    return duration<double, std::milli>(off.at - on.at).count();
}
} // namespace

TEST(RotatorController, AutomaticElevationPulsesAtMostOncePerTick)
{
    RotatorRig r;
    r.rotator->setAuto(true);
    for (int tick = 0; tick < 3; ++tick) {
        r.rotator->autoElevationStep(0.3);
        QTest::qWait(200);
    }
    r.rotator->waitForPulses();
    auto e = r.up->edges();
    ASSERT_EQ(e.size(), 6u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(e[2 * i].on);
        EXPECT_FALSE(e[2 * i + 1].on);
        EXPECT_GE(lengthMs(e[2 * i], e[2 * i + 1]), 50.0);
        EXPECT_LT(lengthMs(e[2 * i], e[2 * i + 1]), 80.0);
    }
    EXPECT_EQ(r.up->outputCalls(), 3);
    EXPECT_TRUE(r.down->edges().empty()); // 1.1 and the dead band are shown through the panel
}

// The buttons and captions are driven through the window; here the order and the hold flag.
TEST(RotatorController, ElevationButtonSwitchesAutomaticOffBeforeTheMotorRuns)
{
    RotatorRig r;
    r.rotator->setAuto(true);
    size_t edgesWhenSwitchedOff = 99;
    QObject::connect(r.rotator.get(), &RotatorController::autoChanged,
        [&](bool on) { edgesWhenSwitchedOff = on ? 99 : r.up->edges().size(); });
    r.rotator->elevationPressed(true);
    EXPECT_EQ(edgesWhenSwitchedOff, 0u);
    EXPECT_TRUE(r.station.hold);
    QTest::qWait(100);
    r.rotator->elevationReleased(true);
    EXPECT_FALSE(r.station.hold);
    const auto e = r.up->edges();
    ASSERT_EQ(e.size(), 2u); // the motor ran exactly as long as the button was held
    EXPECT_GE(lengthMs(e[0], e[1]), 100.0);
}
