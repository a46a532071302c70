// When a polled device stops being believed: after three unanswered ticks on an open port, at
// once when the port is closed, and again from its first answer.
#include "core/SilenceWatch.h"

#include <gtest/gtest.h>

#include <string>

namespace {
using State = SilenceWatch::State;

// One letter per tick: 'a' open and answered, 'q' open and quiet, 'c' closed.
// One letter per resulting state: A answering, S silent, C closed.
std::string run(const std::string& ticks)
{
    SilenceWatch w;
    std::string states;
    for (char t : ticks) {
        const State s = w.tick(t != 'c', t == 'a');
        states += s == State::Answering ? 'A' : s == State::Silent ? 'S' : 'C';
    }
    return states;
}
} // namespace

TEST(SilenceWatch, StatesFollowTheTicks)
{
    const struct {
        const char* ticks;
        const char* states;
    } cases[] = {
        { "aaaa", "AAAA" }, { "aqqqa", "AAASA" }, // the third quiet tick is silent; one answer ends it
        { "aqqaqqa", "AAAAAAA" }, // two quiet ticks in a row are a slow reply, not a loss
        { "qqqqq", "AASSS" }, // a port that never answered since it opened
        { "aqqqqc", "AAASSC" }, // closing ends the silence: closed is said as closed
        { "cqqa", "CAAA" }, // reopened: counted afresh
    };
    for (const auto& c : cases)
        EXPECT_EQ(run(c.ticks), c.states) << c.ticks;
}
