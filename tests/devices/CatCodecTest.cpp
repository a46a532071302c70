#include "devices/rig/CatCodec.h"
#include "devices/rig/LinePace.h"

#include <gtest/gtest.h>

TEST(CatCodec, FrequencyCommandCutsTheTextIntoPackedBcdGroupsFromTheRight)
{
    const std::tuple<const char*, int, const char*> cases[] = {
        { "5020000", 8, "0502000001" },
        { " 14410099 ", 8, "1441009901" },
        // Short or odd texts are sent as they come out, never refused.
        { "144100", 8, "0014410001" },
        { "", 8, "0000000001" },
        { "abc", 8, "0000000001" },
        { "1441x000", 8, "0000144101" },
    };
    for (const auto& [text, digits, bytes] : cases)
        EXPECT_EQ(Cat::frequencyCommand(text, digits).toHex(), QByteArray(bytes)) << text << " " << digits;
}

TEST(CatCodec, TextFrequencyCommandPadsOnlySixCharacterTexts)
{
    EXPECT_EQ(Cat::frequencyTextCommand("144100"), QByteArray("FA144100000;"));
    EXPECT_EQ(Cat::frequencyTextCommand("12345"), QByteArray("FA123450;"));
}

TEST(CatCodec, MegahertzTextDropsTrailingZeros)
{
    EXPECT_EQ(Cat::megahertzText(14410001), QString("144.10001"));
    EXPECT_EQ(Cat::megahertzText(5020000), QString("50.2"));
}

TEST(LinePace, TimeOnTheLineFollowsTheSettings)
{
    EXPECT_EQ(LinePace::microseconds("9600,n,8,1", 96), 100000); // 10 bits a byte
    EXPECT_EQ(LinePace::microseconds("4800,e,7,2", 48), 110000); // 11 bits
    EXPECT_EQ(LinePace::microseconds("1200,n,8,1.5", 12), 105000); // 10.5 bits
    EXPECT_EQ(LinePace::microseconds("garbage", 96), 100000); // taken as 9600,n,8,1
    EXPECT_EQ(LinePace::microseconds("9600,n,8,1", 0), 0);
}
