#include "devices/rotator/RotatorCodec.h"

#include <gtest/gtest.h>

TEST(RotatorCodec, Format000PadsWholeNumbersAndLeavesOtherTexts)
{
    const std::pair<const char*, const char*> cases[]
        = { { "45", "045" }, { "359", "359" }, { "1234", "1234" }, { " 45 ", "045" }, { "45.5", "046" },
              { "45.4", "045" }, { "-5", "-005" }, { "abc", "abc" }, { "", "" } };
    for (const auto& [text, formatted] : cases)
        EXPECT_EQ(Rotator::format000(text), QString(formatted)) << text;
    EXPECT_EQ(Rotator::secondSetValueCommand(""), QByteArray("AW1;"));
}

TEST(RotatorCodec, AutomaticElevationKeepsTheBandFrom04To10)
{
    using P = Rotator::Pulse;
    const std::pair<double, P> cases[]
        = { { 0.3, P::Up }, { -2.0, P::Up }, { 0.4, P::None }, { 1.0, P::None }, { 1.1, P::Down },
              // taken as shown, with one decimal
              { 0.38, P::None }, { 0.34, P::Up }, { 1.04, P::None }, { 1.05, P::Down } };
    for (const auto& [reading, pulse] : cases)
        EXPECT_EQ(Rotator::autoElevation(reading), pulse) << reading;
}
