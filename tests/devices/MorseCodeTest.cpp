#include "devices/keyer/MorseCode.h"

#include <gtest/gtest.h>

using Morse::Step;
using Morse::Steps;

namespace {
Step down(int ms)
{
    return { true, ms };
}
Step gap(int ms)
{
    return { false, ms };
}
} // namespace

TEST(MorseCode, TableWithProcedureSigns)
{
    const std::pair<char, const char*> expected[] = { { '0', "-----0" }, { '5', ".....0" }, { '9', "----.0" },
        { 'a', ".-0" }, { 'e', ".0" }, { 't', "-0" }, { 'q', "--.-0" }, { 'z', "--..0" }, { ',', "--..--0" },
        { '-', "-....-0" }, { '.', ".-.-.-0" }, { '/', "-..-.0" }, { '\\', "-..-.0" }, { '=', "-...-0" },
        { '?', "..--..0" }, { ':', "---...0" }, { '(', "-.--.-0" }, { ')', "-.--.-0" }, { '\'', ".-..-.0" },
        { '*', ".-...0" }, { '@', "-.--.0" }, { '&', ".-.-.0" }, { '%', "...-.0" }, { '~', "-...-.-0" },
        { '>', "...-...-...-0" }, { '<', "...-.-0" } };
    for (const auto& [c, p] : expected)
        EXPECT_STREQ(Morse::pattern(QLatin1Char(c)), p) << c;
    EXPECT_STREQ(Morse::pattern(QLatin1Char('Q')), "--.-0");
    for (char c : { '!', '"', '#', '$', '+', ';', '[', '_', '{', '|' })
        EXPECT_EQ(Morse::pattern(QLatin1Char(c)), nullptr) << c;
    EXPECT_EQ(Morse::pattern(QChar(0x00C4)), nullptr);
}

TEST(MorseCode, ElementsGapsAndWordSpaceAtEachSpeed)
{
    EXPECT_EQ(Morse::unitMs(1), 100);
    EXPECT_EQ(Morse::unitMs(2), 75);
    EXPECT_EQ(Morse::unitMs(3), 50);
    for (const auto& [unit, dash] : { std::pair { 100, 350 }, { 75, 263 }, { 50, 175 } }) {
        ASSERT_EQ(Morse::dashMs(unit), dash); // 3.5 units, rounded
        // "e": key down one unit, one unit gap, word space of two.
        EXPECT_EQ(Morse::decode(QLatin1Char('e'), unit), (Steps { down(unit), gap(unit), gap(2 * unit) }));
        EXPECT_EQ(Morse::textCharacter(QLatin1Char('e'), unit),
            (Steps { down(unit), gap(unit), gap(2 * unit), gap(2 * unit) }));
        EXPECT_EQ(Morse::decode(QLatin1Char('t'), unit), (Steps { down(dash), gap(unit), gap(2 * unit) }));
        // ">" is three V signs as one character: one unit between all its elements.
        Steps vvv;
        for (int v = 0; v < 3; ++v)
            vvv.insert(vvv.end(),
                { down(unit), gap(unit), down(unit), gap(unit), down(unit), gap(unit), down(dash),
                    gap(unit) });
        vvv.push_back(gap(2 * unit));
        EXPECT_EQ(Morse::decode(QLatin1Char('>'), unit), vvv);
        // A space is a word space, and another follows within a text.
        EXPECT_EQ(Morse::decode(QLatin1Char(' '), unit), Steps { gap(2 * unit) });
        EXPECT_EQ(Morse::textCharacter(QLatin1Char(' '), unit), (Steps { gap(2 * unit), gap(2 * unit) }));
        // Outside the table: nothing keyed, only the word space that follows every character.
        EXPECT_EQ(Morse::decode(QLatin1Char('#'), unit), Steps {});
        EXPECT_EQ(Morse::textCharacter(QLatin1Char('#'), unit), Steps { gap(2 * unit) });
    }
}

TEST(MorseCode, TextLengthIsTheSumOfElementsAndGaps)
{
    EXPECT_EQ(Morse::textMs(" ", 75), 300);
    // "paris" at 100 ms: 10 dots, 4 dashes, 14 element gaps, 5 x (2 + 2) units.
    EXPECT_EQ(Morse::textMs("paris", 100), 10 * 100 + 4 * 350 + 14 * 100 + 5 * 400);
}
