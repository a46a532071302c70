// What a Hamlib NET rotctl client gets for each line, with the rotator controller on a
// pseudo-terminal behind it; the answers follow Hamlib 4.5's rotctld.
#include "devices/rotator/RotatorCodec.h"
#include "tests/hub/HubStation.h"

#include <gtest/gtest.h>

TEST(RotctlProtocol, PositionStopParkAndState)
{
    HubStation s;
    s.readBack = QStringLiteral("075");
    s.sensorElevation = 12.5;
    struct Step {
        const char* line;
        const char* answer;
    };
    for (const Step& step : std::initializer_list<Step> {
             { "p", "75.00\n12.50\n" },
             { "+p", "get_pos:\nAzimuth: 75.00\nElevation: 12.50\nRPRT 0\n" },
             { "P 123 10", "RPRT 0\n" },
             { "+P 123.000000 10.000000", "set_pos: 123.000000 10.000000\nRPRT 0\n" },
             { "P -90 0", "RPRT 0\n" },
             { "P 500 0", "RPRT -1\n" },
             { "P 10 95", "RPRT -1\n" },
             { "P x 0", "RPRT -1\n" },
             { "S", "RPRT 0\n" },
             { "+K", "park:\nRPRT 0\n" },
             { "\\dump_state",
                 "1\n1\nmin_az=-180.000000\nmax_az=450.000000\nmin_el=0.000000\nmax_el=90.000000\n"
                 "south_zero=0\nrot_type=AzEl\ndone\n" },
             { "M 2 5", "RPRT -4\n" },
         })
        EXPECT_EQ(s.rotatorProtocol.answer(step.line).bytes.toStdString(), step.answer) << step.line;

    // Antennedrehen's commands, a stop, and park at north; the window's box shows the last.
    const QByteArray expected = Rotator::setHeadingCommand("123") + Rotator::setHeadingCommand("123")
        + Rotator::setHeadingCommand("270") + Rotator::Stop + Rotator::setHeadingCommand("000");
    EXPECT_EQ(s.received(4, expected.size()), expected);
    EXPECT_EQ(s.azimuthBox, "000");
}

TEST(RotctlProtocol, ElevationPulsesTowardsTheSetValueOncePerTick)
{
    HubStation s;
    s.sensorElevation = 5.0;
    ASSERT_EQ(s.rotatorProtocol.answer("P 0 10").bytes, "RPRT 0\n");
    s.hubRotator.tick();
    s.rotatorController.waitForPulses();
    EXPECT_EQ(s.up->edges().size(), 2u); // one pulse: on, then off
    EXPECT_TRUE(s.down->edges().empty());

    s.sensorElevation = 10.4; // close enough: no more pulses
    s.hubRotator.tick();
    s.sensorElevation = 3.0;
    s.hubRotator.tick();
    s.rotatorController.waitForPulses();
    EXPECT_EQ(s.up->edges().size(), 2u);
    EXPECT_TRUE(s.down->edges().empty());
}
