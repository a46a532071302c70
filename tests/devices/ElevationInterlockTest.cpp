#include "StationRig.h"
#include "devices/lines/RealtimePriority.h"
#include "devices/rotator/RotatorController.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

using namespace std::chrono;

namespace {
using Edge = RecordingLine::Edge;

// Both motor lines on at the same moment, replayed from the recorded edges of both lines.
int overlaps(const std::vector<Edge>& up, const std::vector<Edge>& down)
{
    struct Tagged {
        Edge edge;
        bool isUp;
    };
    std::vector<Tagged> all;
    for (const Edge& e : up)
        all.push_back({ e, true });
    for (const Edge& e : down)
        all.push_back({ e, false });
    std::stable_sort(
        all.begin(), all.end(), [](const Tagged& a, const Tagged& b) { return a.edge.at < b.edge.at; });
    bool upOn = false;
    bool downOn = false;
    int both = 0;
    for (const Tagged& t : all) {
        (t.isUp ? upOn : downOn) = t.edge.on;
        if (upOn && downOn)
            ++both;
    }
    return both;
}

void waitUntilOn(const RecordingLine& line)
{
    const auto give_up = steady_clock::now() + seconds(2);
    while (!line.state() && steady_clock::now() < give_up)
        std::this_thread::sleep_for(microseconds(200));
}
} // namespace

TEST(ElevationInterlock, TheOutputLayerRefusesOneDirectionWhileTheOtherRuns)
{
    StationRig r;
    const struct {
        quint8 line;
        quint8 state;
        bool accepted;
    } steps[] = {
        { OutputLines::UpLine, 1, true }, { OutputLines::DownLine, 1, false }, // up still runs
        { OutputLines::DownLine, 0, true }, // switching off is always allowed
        { OutputLines::UpLine, 0, true }, { OutputLines::DownLine, 1, true },
        { OutputLines::UpLine, 1, false }, { OutputLines::KeyLine, 1, true }, // the key is no motor
    };
    for (const auto& s : steps)
        EXPECT_EQ(r.lines.UsbSetIOState(OutputLines::ModulePort, s.line, s.state), s.accepted)
            << int(s.line) << " " << int(s.state);
    EXPECT_EQ(r.up->edges().size(), 2u);
    EXPECT_EQ(r.down->edges().size(), 2u);
    EXPECT_EQ(overlaps(r.up->edges(), r.down->edges()), 0);
}

// 200 hand presses, each at a random point inside a running automatic pulse, in a random
// direction, held for a random time.
TEST(ElevationInterlock, HandPressesInsideAutomaticPulsesNeverOverlapAndRunExactlyAsHeld)
{
    StationRig r;
    RotatorController rotator(r.station, r.ports, r.lines);
    // This thread times the holds: on a busy machine an ordinary thread can lose the processor
    // between its time stamp and the press, which would be counted against the press.
    RealtimePriority::raiseCurrentThread();
    std::mt19937 random(16);
    std::uniform_int_distribution<int> coin(0, 1);
    std::uniform_int_distribution<int> offsetUs(500, 45000);
    std::uniform_int_distribution<int> holdUs(3000, 40000);
    int together = 0;
    double worstMs = 0;
    for (int i = 0; i < 200; ++i) {
        r.up->clear();
        r.down->clear();
        const bool pulseUp = coin(random) != 0;
        pulseUp ? rotator.pulseUp() : rotator.pulseDown();
        waitUntilOn(pulseUp ? *r.up : *r.down);
        std::this_thread::sleep_for(microseconds(offsetUs(random)));

        const bool handUp = coin(random) != 0;
        const auto pressed = steady_clock::now();
        rotator.elevationPressed(handUp);
        std::this_thread::sleep_until(pressed + microseconds(holdUs(random)));
        const auto released = steady_clock::now();
        rotator.elevationReleased(handUp);
        rotator.waitForPulses();

        const auto up = r.up->edges();
        const auto down = r.down->edges();
        together += overlaps(up, down);
        const auto& hand = handUp ? up : down;
        ASSERT_GE(hand.size(), 2u) << "press " << i;
        const Edge& on = hand[hand.size() - 2];
        const Edge& off = hand.back();
        ASSERT_TRUE(on.on && !off.on) << "press " << i << ": the hand's motor was cut off";
        const double motorMs = duration<double, std::milli>(off.at - on.at).count();
        const double heldMs = duration<double, std::milli>(released - pressed).count();
        worstMs = std::max(worstMs, std::abs(motorMs - heldMs));
        EXPECT_NEAR(motorMs, heldMs, 5.0) << "press " << i;
    }
    EXPECT_EQ(together, 0);
    RecordProperty("worst_hold_error_us", int(worstMs * 1000));
}
