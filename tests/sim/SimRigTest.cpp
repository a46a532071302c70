#include "sim/devices/SimRig.h"

#include <gtest/gtest.h>

namespace {
QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}
} // namespace

TEST(SimRig, DecodesFt847Frames)
{
    SimRig rig;
    const std::pair<const char*, qint64> frequencies[] = { { "1441000001", 144100000 }, // 144.100 00 MHz
        { "4322000001", 432200000 }, { "0502000001", 50200000 }, { "9999999901", 999999990 } };
    for (const auto& [frame, hz] : frequencies) {
        EXPECT_EQ(rig.receive(hex(frame)), QByteArray());
        EXPECT_EQ(rig.frequencyHz(), hz) << frame;
    }
    rig.receive(hex("1A41000001")); // a nibble above 9 is no BCD: refused, the frequency kept
    EXPECT_EQ(rig.frequencyHz(), 999999990);

    const std::pair<const char*, SimRig::Mode> modes[] = { { "0200000007", SimRig::Mode::CW },
        { "0100000007", SimRig::Mode::USB }, { "8800000007", SimRig::Mode::FMN } };
    for (const auto& [frame, mode] : modes) {
        rig.receive(hex(frame));
        EXPECT_EQ(rig.mode(), mode) << frame;
    }
    rig.receive(hex("5500000007")); // no such mode
    EXPECT_EQ(rig.mode(), SimRig::Mode::FMN);
    rig.receive(hex("0000000008"));
    EXPECT_TRUE(rig.transmitting());
    rig.receive(hex("0000000088"));
    EXPECT_FALSE(rig.transmitting());

    rig.receive(hex("1441000001") + hex("0200000007"));
    EXPECT_EQ(rig.receive(hex("0000000003")), hex("1441000002"));
    EXPECT_EQ(rig.refused(), 2);
}

TEST(SimRig, SpeaksTheTextDialect)
{
    SimRig rig;
    rig.receive("FA144100000;MD02;TX1;");
    EXPECT_EQ(rig.frequencyHz(), 144100000);
    EXPECT_EQ(rig.mode(), SimRig::Mode::USB);
    EXPECT_TRUE(rig.transmitting());
    EXPECT_EQ(rig.receive("TX;"), QByteArray("TX1;"));
    rig.receive("TX0;MD03;");
    EXPECT_FALSE(rig.transmitting());
    EXPECT_EQ(rig.receive("FA;MD0;"), QByteArray("FA144100000;MD03;"));
    rig.receive("FA50100000;"); // seven-digit text plus "0": 50.100 00 MHz as it stands
    EXPECT_EQ(rig.frequencyHz(), 50100000);
    EXPECT_EQ(rig.receive("ZZ9;FA12x;"), QByteArray("?;?;"));
}

TEST(SimRig, AssemblesCommandsSplitAcrossReadsAndDropsOnesCutShort)
{
    SimRig rig;
    const QByteArray stream = hex("4321000001") + "MD03;" + hex("0000000008") + "FA50100000;";
    for (char c : stream)
        rig.receive(QByteArray(1, c));
    EXPECT_EQ(
        rig.stateLine(), QStringLiteral("frequency=50100000 mode=CW tx=1 commands=4 refused=0 plain=-"));

    rig.receive(hex("144100"));
    rig.tick(100);
    rig.receive(QByteArray()); // nothing new: the pause goes on
    rig.tick(150);
    EXPECT_EQ(rig.refused(), 1);
    rig.receive(hex("1442000001"));
    EXPECT_EQ(rig.frequencyHz(), 144200000);
}

TEST(SimRig, NotesThePlainFrequencyTextBeforeACommand)
{
    SimRig rig;
    rig.receive(QByteArray("5020000") + hex("0502000001"));
    EXPECT_EQ(rig.plainText(), QByteArray("5020000"));
    EXPECT_EQ(rig.frequencyHz(), 50200000);
    EXPECT_EQ(rig.refused(), 0);

    // Alone on the line (the rig is on the other port), the text is taken once the line is quiet.
    rig.receive("43220000");
    EXPECT_EQ(rig.plainText(), QByteArray("5020000"));
    rig.tick(300);
    EXPECT_EQ(rig.plainText(), QByteArray("43220000"));
    EXPECT_EQ(rig.frequencyHz(), 50200000);
}
