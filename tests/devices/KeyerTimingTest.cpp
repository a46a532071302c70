// The keying thread against a recording key line: the exact sequence of edges and their
// times on the monotonic clock, for each speed.
#include "devices/keyer/MorseKeyer.h"
#include "devices/lines/OutputLines.h"
#include "devices/lines/RecordingLine.h"

#include <gtest/gtest.h>

#include <future>

using namespace std::chrono;
using Clock = steady_clock;

namespace {
struct Keying {
    OutputLines lines;
    std::shared_ptr<RecordingLine> key = std::make_shared<RecordingLine>();
    MorseKeyer keyer { lines };
    Keying() { lines.setLine(OutputLines::Role::Key, key); }

    // Returns when the keyer said it was done.
    Clock::time_point send(
        int unit, const QString& text, bool loop = false, const std::function<void()>& during = {})
    {
        std::promise<Clock::time_point> done;
        EXPECT_TRUE(keyer.start(unit, text, loop, [&] { done.set_value(Clock::now()); }));
        if (during)
            during();
        auto end = done.get_future().get();
        keyer.wait();
        return end;
    }
};

// Planned edge times (ms after the start) of a text sent once.
std::vector<std::pair<double, bool>> plannedEdges(const QString& text, int unit)
{
    std::vector<std::pair<double, bool>> edges;
    double t = 0;
    for (QChar c : text)
        for (const Morse::Step& s : Morse::textCharacter(c, unit)) {
            if (s.keyDown)
                edges.push_back({ t, true });
            t += s.ms;
            if (s.keyDown)
                edges.push_back({ t, false });
        }
    return edges;
}

double msSince(Clock::time_point origin, Clock::time_point t)
{
    return duration<double, std::milli>(t - origin).count();
}

} // namespace

// Room for a busy machine's scheduling; still well below the 25 ms or more by which a wrong
// element length or speed would miss.
constexpr double SlackMs = 10.0;

// "e", "T" (keyed as "t"), ">" (three V signs), a character outside the table and a space.
TEST(KeyerTiming, EveryEdgeOnItsTimeAndTheWholeTextWithinOnePercentAtEachSpeed)
{
    const QString text = QStringLiteral("eT> #");
    for (int speedIndex : { 1, 2, 3 }) {
        const int unit = Morse::unitMs(speedIndex);
        Keying k;
        const auto end = k.send(unit, text);
        const auto origin = k.keyer.origin();
        const auto planned = plannedEdges(text, unit);
        ASSERT_EQ(planned.size(), 28u); // 1 + 1 + 12 elements, "#" and " " key nothing
        const auto edges = k.key->edges();
        ASSERT_EQ(edges.size(), planned.size()) << "speed " << speedIndex;
        for (size_t i = 0; i < edges.size(); ++i) { // on time each: errors do not add up
            EXPECT_EQ(edges[i].on, planned[i].second) << "edge " << i;
            EXPECT_NEAR(msSince(origin, edges[i].at), planned[i].first, SlackMs)
                << "edge " << i << " speed " << speedIndex;
        }
        const double ideal = static_cast<double>(Morse::textMs(text, unit));
        EXPECT_NEAR(msSince(origin, end), ideal, ideal * 0.01) << "whole text at speed " << speedIndex;
        EXPECT_FALSE(k.key->state()); // left up
    }
}

TEST(KeyerTiming, LoopRepeatsWhileTheSwitchIsOnAndTakesTextEdits)
{
    Keying k;
    const auto end = k.send(50, "e", true, [&] {
        std::this_thread::sleep_for(milliseconds(150));
        k.keyer.setText("t");
        std::this_thread::sleep_for(milliseconds(500));
        k.keyer.setLoop(false);
    });
    // pass 1 "e" (300 ms), pass 2 "t" (425 ms) during which the switch goes off
    EXPECT_EQ(k.keyer.passes(), 2);
    const auto e = k.key->edges();
    ASSERT_EQ(e.size(), 4u);
    EXPECT_NEAR(msSince(e[2].at, e[3].at), 175.0, SlackMs);
    EXPECT_NEAR(msSince(k.keyer.origin(), end), 725.0, SlackMs);
}
