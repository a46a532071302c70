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
        { "0502000001", 50200000 }, { "9999999901", 999999990 } };
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

TEST(SimRig, AnswersTheFt847StatusReadsAndHonoursCatOff)
{
    SimRig rig;
    const struct {
        const char* frame;
        QByteArray answer;
    } reads[] = {
        { "00000000e7", hex("80") }, // squelch closed, no signal
        { "00000000f7", hex("80") }, // receiving
        { "0000000008", {} },
        { "00000000f7", hex("10") }, // transmitting
        { "0000000188", {} }, // PTT off as Hamlib writes it
        { "00000000f7", hex("80") },
        { "0000000013", hex("1443000001") }, // the satellite reads answer like the main one
        { "000000004e", {} },
        { "000000008e", {} },
    };
    for (const auto& r : reads)
        EXPECT_EQ(rig.receive(hex(r.frame)).toHex(), r.answer.toHex()) << r.frame;
    EXPECT_EQ(rig.refused(), 0);

    rig.receive(hex("0000000080")); // CAT off: nothing but CAT ON is heard
    EXPECT_FALSE(rig.catOn());
    EXPECT_EQ(rig.receive(hex("1296000001") + hex("00000000f7")), QByteArray());
    EXPECT_EQ(rig.frequencyHz(), 144300000);
    rig.receive(hex("0000000000"));
    EXPECT_TRUE(rig.catOn());
    EXPECT_EQ(rig.receive(hex("00000000e7")), hex("80"));
}

TEST(SimRig, AnswersTheQueriesAYaesuTextClientSends)
{
    SimRig rig;
    rig.receive("FA144200000;MD03;");
    const std::pair<const char*, const char*> exchanges[] = {
        { "ID;", "ID0570;" },
        { "IF;", "IF001144200000+000000300000;" },
        { "AI;", "AI0;" },
        { "AI1;AI;", "AI1;" },
        { "PS;", "PS1;" },
        { "FB;", "FB144300000;" },
        { "FB432100000;FB;", "FB432100000;" },
        { "VS;", "VS0;" },
        { "FT3;FT;", "FT1;" },
        { "ST;", "ST0;" },
        { "SM0;", "SM0000;" },
        { "AI7;", "?;" },
        { "ID1;", "?;" },
    };
    for (const auto& [sent, answer] : exchanges)
        EXPECT_EQ(rig.receive(sent), QByteArray(answer)) << sent;
    EXPECT_EQ(rig.frequencyHz(), 144200000);
}
