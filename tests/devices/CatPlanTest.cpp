#include "devices/rig/CatPlan.h"
#include "devices/rig/CatCodec.h"

#include <gtest/gtest.h>

namespace {
QByteArray hex(const char* h)
{
    return QByteArray::fromHex(h);
}
CatStep w(int com, const QByteArray& b)
{
    return CatStep::write(com, b);
}
// What SendFreq adds after its mode command: open both ports, the plain text to Com2, then
// the rig's frequency command.
CatSteps freq(const char* text, const CatStep& rigCommand)
{
    return { CatStep::open(1), CatStep::open(2), w(2, text), rigCommand };
}
RigSetup setup(const char* port, bool com1Text, bool com2Text, int band)
{
    return RigSetup { QString::fromLatin1(port), com1Text, com2Text, band };
}
} // namespace

TEST(CatPlan, SendFreqWritesThePlainTextToCom2FirstWhereverTheRigIs)
{
    EXPECT_EQ(CatPlan::sendFreq("14410000", setup("Com1", false, false, 2)),
        freq("14410000", w(1, hex("1441000001"))));
    EXPECT_EQ(CatPlan::sendFreq("5020000", setup("Com1", false, false, 1)),
        freq("5020000", w(1, hex("0502000001"))));
    EXPECT_EQ(
        CatPlan::sendFreq("14410000", setup("Com1", true, false, 2)), freq("14410000", w(1, "FA144100000;")));
    EXPECT_EQ(CatPlan::sendFreq("43220000", setup("Com2", false, false, 3)),
        freq("43220000", w(2, hex("4322000001"))));
    // The text dialect on Com2 still sends its frequency command to Com1.
    EXPECT_EQ(
        CatPlan::sendFreq("5010000", setup("Com2", false, true, 1)), freq("5010000", w(1, "FA50100000;")));
    // A rig port name that is neither literal gets only the plain text.
    EXPECT_EQ(CatPlan::sendFreq("14410000", setup("COM1", false, false, 2)),
        (CatSteps { CatStep::open(1), CatStep::open(2), w(2, "14410000") }));
}

TEST(CatPlan, PresetsForTheBinaryRigOnCom1)
{
    const RigSetup s = setup("Com1", false, false, 2);
    auto p = CatPlan::preset(1, s);
    EXPECT_EQ(p.steps, CatSteps { w(1, Cat::ModeCw) } + freq("14410000", w(1, hex("1441000001"))));
    EXPECT_EQ(p.frequencyText, QString("14410000"));
    p = CatPlan::preset(2, s);
    EXPECT_EQ(p.steps, CatSteps { w(1, Cat::ModeUsb) } + freq("14420000", w(1, hex("1442000001"))));
    p = CatPlan::preset(3, s);
    EXPECT_EQ(p.steps, CatSteps { w(1, Cat::ModeUsb) } + freq("14490000", w(1, hex("1449000001"))));
    EXPECT_EQ(p.frequencyText, QString("14490000"));
    p = CatPlan::preset(4, s);
    EXPECT_EQ(p.steps, CatSteps { w(1, Cat::ModeCw) });
    EXPECT_FALSE(p.frequencyText);
    EXPECT_EQ(CatPlan::preset(5, s).steps, CatSteps { w(1, Cat::ModeUsb) });
    EXPECT_TRUE(CatPlan::preset(0, s).steps.isEmpty());
    EXPECT_TRUE(CatPlan::preset(6, s).steps.isEmpty());
}

TEST(CatPlan, PresetsForTheTextRigOnCom1KeepTheirOrder)
{
    const RigSetup s = setup("Com1", true, false, 2);
    auto p = CatPlan::preset(1, s);
    EXPECT_EQ(p.steps, (CatSteps { w(1, "MD03;"), w(1, "FA144100000;") }));
    EXPECT_EQ(p.frequencyText, QString("14410000"));
    p = CatPlan::preset(2, s);
    EXPECT_EQ(p.steps, (CatSteps { w(1, "FA144200000;"), w(1, "MD03;") }));
    EXPECT_EQ(p.frequencyText, QString("14420000"));
    p = CatPlan::preset(3, s);
    EXPECT_EQ(p.steps, (CatSteps { w(1, "FA144900000;") }));
    EXPECT_EQ(p.frequencyText, QString("14490000"));
    EXPECT_EQ(CatPlan::preset(4, s).steps, (CatSteps { w(1, "MD03;") }));
    EXPECT_EQ(CatPlan::preset(5, s).steps, (CatSteps { w(1, "MD02;") }));
}

TEST(CatPlan, PresetsForTheRigOnCom2ByBand)
{
    struct Cell {
        int index;
        int band;
        const char* text;
        const char* bcd;
    };
    const Cell cells[] = {
        { 1, 2, "14410000", "1441000001" },
        { 1, 3, "43210000", "4321000001" },
        { 2, 1, "5020000", "0502000001" },
        { 2, 2, "14420000", "1442000001" },
        { 2, 3, "43220000", "4322000001" },
        { 3, 1, "5090000", "0509000001" },
        { 3, 2, "14490000", "1449000001" },
        { 3, 3, "43290000", "4329000001" },
    };
    for (const Cell& c : cells) {
        const auto p = CatPlan::preset(c.index, setup("Com2", false, false, c.band));
        EXPECT_EQ(p.steps, CatSteps { w(2, Cat::ModeCw) } + freq(c.text, w(2, hex(c.bcd))))
            << "option " << c.index << " band " << c.band;
        EXPECT_EQ(p.frequencyText, QString(c.text));
    }
    // 50 MHz channel "100": plain text only, no mode, no BCD.
    const auto p = CatPlan::preset(1, setup("Com2", false, false, 1));
    EXPECT_EQ(p.steps, CatSteps { w(2, "5010000") });
    EXPECT_EQ(p.frequencyText, QString("5010000"));
    for (int band : { 1, 2, 3 }) {
        EXPECT_EQ(
            CatPlan::preset(4, setup("Com2", false, false, band)).steps, CatSteps { w(2, Cat::ModeCw) });
        EXPECT_EQ(
            CatPlan::preset(5, setup("Com2", false, false, band)).steps, CatSteps { w(2, Cat::ModeUsb) });
    }
    // Binary mode to Com2 even when Com2 speaks text; the frequency then goes to Com1 as text.
    EXPECT_EQ(CatPlan::preset(2, setup("Com2", false, true, 2)).steps,
        CatSteps { w(2, Cat::ModeCw) } + freq("14420000", w(1, "FA144200000;")));
}

TEST(CatPlan, PushToTalkGoesToTheRigPortInBinaryOnly)
{
    EXPECT_EQ(CatPlan::ptt(true, setup("Com1", true, false, 2)), CatSteps { w(1, hex("0000000008")) });
    EXPECT_EQ(CatPlan::ptt(false, setup("Com1", false, false, 2)), CatSteps { w(1, hex("0000000088")) });
    EXPECT_EQ(CatPlan::ptt(true, setup("Com2", false, false, 2)), CatSteps { w(2, hex("0000000008")) });
    EXPECT_TRUE(CatPlan::ptt(true, setup("", false, false, 2)).isEmpty());
}

TEST(CatPlan, TextDialectFollowsTheRigPortsCheckBox)
{
    EXPECT_TRUE(CatPlan::textDialect(setup("Com1", true, false, 2)));
    EXPECT_FALSE(CatPlan::textDialect(setup("Com1", false, true, 2)));
    EXPECT_TRUE(CatPlan::textDialect(setup("Com2", false, true, 2)));
    EXPECT_FALSE(CatPlan::textDialect(setup("Com2", true, false, 2)));
}
