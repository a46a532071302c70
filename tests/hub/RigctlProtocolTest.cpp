// What a Hamlib NET rigctl client gets for each line, byte for byte, with the rig behind it a
// RigController on pseudo-terminals; the answers follow Hamlib 4.5's rigctld.
#include "devices/rig/CatCodec.h"
#include "tests/hub/HubStation.h"

#include <gtest/gtest.h>

namespace {
struct Step {
    const char* line;
    const char* answer;
};

void run(HubStation& s, std::initializer_list<Step> steps)
{
    for (const Step& step : steps)
        EXPECT_EQ(s.rigProtocol.answer(step.line).bytes.toStdString(), step.answer) << step.line;
}
} // namespace

TEST(RigctlProtocol, GetsInThePlainAndTheExtendedForms)
{
    HubStation s;
    s.rig.setCounter(14430000);
    run(s,
        {
            { "f", "144300000\n" },
            { "\\get_freq", "144300000\n" },
            { "+f", "get_freq:\nFrequency: 144300000\nRPRT 0\n" },
            { ";f", "get_freq:;Frequency: 144300000;RPRT 0\n" },
            { "|\\get_freq", "get_freq:|Frequency: 144300000|RPRT 0\n" },
            { "m", "USB\n2400\n" },
            { "+m", "get_mode:\nMode: USB\nPassband: 2400\nRPRT 0\n" },
            { "t", "0\n" },
            { "+t", "get_ptt:\nPTT: 0\nRPRT 0\n" },
            { "v", "VFOA\n" },
            { "+v", "get_vfo:\nVFO: VFOA\nRPRT 0\n" },
            { "s", "0\nVFOA\n" },
            { "+s", "get_split_vfo:\nSplit: 0\nTX VFO: VFOA\nRPRT 0\n" },
            { "\\chk_vfo", "0\n" },
            { "+\\chk_vfo", "ChkVFO: 0\n" },
            { "\\get_powerstat", "1\n" },
            { "+\\get_powerstat", "get_powerstat:\nPower Status: 1\nRPRT 0\n" },
            { "\\get_vfo_info VFOA", "144300000\nUSB\n2400\n0\n0\n" },
            { "\\get_lock_mode", "0\n" },
            { "f m", "144300000\nUSB\n2400\n" }, // several commands on one line
            { "  f\r", "144300000\n" },
            { "", "" },
        });
}

TEST(RigctlProtocol, SetsReachTheRigThroughItsOwnCommands)
{
    HubStation s;
    run(s,
        {
            { "F 144300000", "RPRT 0\n" },
            { "f", "144300000\n" },
        });
    EXPECT_EQ(s.received(1, 5), Cat::frequencyCommand(QStringLiteral("14430000"), 8));
    EXPECT_EQ(s.received(2, 8), QByteArray("14430000"));
    EXPECT_EQ(s.station.frequencyText, "14430000");

    run(s,
        {
            { "+M CW 0", "set_mode: CW 0\nRPRT 0\n" },
            { "m", "CW\n500\n" },
            { "M PKTUSB 3000", "RPRT 0\n" },
            { "m", "USB\n3000\n" },
        });
    EXPECT_EQ(s.received(1, 10), Cat::ModeCw + Cat::ModeUsb);

    run(s,
        {
            { "T 1", "RPRT 0\n" },
            { "t", "1\n" },
            { "+T 0", "set_ptt: 0\nRPRT 0\n" },
        });
    EXPECT_EQ(s.received(1, 10), Cat::PttOn + Cat::PttOff);
    EXPECT_FALSE(s.rig.ptt());

    run(s,
        {
            { "V VFOA", "RPRT 0\n" },
            { "+S 1 VFOB", "set_split_vfo: 1 VFOB\nRPRT 0\n" },
            { "s", "1\nVFOB\n" },
            { "S 0 VFOA", "RPRT 0\n" },
            { "\\set_powerstat 1", "RPRT 0\n" },
        });
}

TEST(RigctlProtocol, WrongArgumentsAndUnknownCommandsGetAReportAtOnce)
{
    HubStation s;
    run(s,
        {
            { "F abc", "RPRT -1\n" }, { "F -5", "RPRT -1\n" }, { "F", "RPRT -1\n" },
            { "M LSB 2400", "RPRT -1\n" }, { "M USB wide", "RPRT -1\n" }, { "T 7", "RPRT -1\n" },
            { "V VFOB", "RPRT -1\n" }, { "S 2 VFOA", "RPRT -1\n" }, { "\\set_powerstat 0", "RPRT -1\n" },
            { "\\foo_bar", "RPRT -4\n" }, { "Z f", "RPRT -4\n" }, // the rest of the line cannot be told apart
            { "\x01\x02\xff", "RPRT -4\n" }, { "+", "RPRT -4\n" },
            { "f VFOA", "0\nRPRT -4\n" }, // no VFO argument: "VFOA" is the next command
        });
    EXPECT_EQ(s.pty[0].readFor(50), QByteArray()); // nothing reached the rig
}

TEST(RigctlProtocol, ModeNeedsTheRigPortOpenAndNeverPromptsForARemoteClient)
{
    HubStation s;
    s.ports.com(1).close();
    run(s, { { "M CW 500", "RPRT -6\n" }, { "m", "USB\n2400\n" } });
    EXPECT_TRUE(s.prompts.shown.isEmpty());
}

TEST(RigctlProtocol, QuitEndsTheConnection)
{
    HubStation s;
    const auto a = s.rigProtocol.answer("q");
    EXPECT_EQ(a.bytes, "RPRT 0\n");
    EXPECT_TRUE(a.quit);
    EXPECT_FALSE(s.rigProtocol.answer("f").quit);
}

TEST(RigctlProtocol, DumpStateHasHamlibsLayout)
{
    const QList<QByteArray> lines = RigctlProtocol::dumpState().split('\n');
    ASSERT_GT(lines.size(), 30);
    EXPECT_EQ(lines[0], "1"); // protocol version the NET client requires
    EXPECT_EQ(lines[4], "0 0 0 0 0 0 0"); // end of the receive ranges
    EXPECT_EQ(lines[6], "0 0 0 0 0 0 0"); // end of the transmit ranges
    EXPECT_TRUE(lines.contains("ptt_type=0x1"));
    EXPECT_EQ(lines[lines.size() - 2], "done");
    EXPECT_TRUE(lines.last().isEmpty());
}
