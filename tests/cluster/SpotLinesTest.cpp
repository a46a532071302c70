#include "cluster/SpotLines.h"
#include "core/SettingsTable.h"

#include <gtest/gtest.h>

using namespace SpotLines;

TEST(SpotLines, BothLinesCutTheLocatorToSixCharacters)
{
    EXPECT_EQ(fromBoxes("144300.0", "DL1ABC", 1, "JO62QM12"), "dx 144300.0 DL1ABC<Tr>JO62QM");
    EXPECT_EQ(
        fromSpot("144174.0", "SP9ABC", "JO90KA", 3, "JO62QM12AB"), "dx 144174.0 SP9ABC JO90KA<Es>JO62QM");
    // Shorter locators go in whole; an empty remark still leaves its blank; no tag past option 3.
    EXPECT_EQ(fromBoxes("50110.0", "VK4ABC", 2, "JO62"), "dx 50110.0 VK4ABC<Rs>JO62");
    EXPECT_EQ(fromSpot("", "", "", 2, ""), "dx   <Rs>");
    EXPECT_EQ(fromBoxes("1", "K1A", 4, ""), "dx 1 K1A");
}

TEST(SpotLines, FrequencyBetweenTenHertzTextAndKilohertz)
{
    for (auto [text, qrg] : { std::pair { "14410000", "144100.0" }, { "14417460", "144174.6" },
             { "184000", "1840.0" }, { "12225000000", "122250000.0" }, { "007", "0.0" },
             { " 1 441 000 0", "144100.0" }, { "", "" }, { "abc", "" } })
        EXPECT_EQ(qrgFromFrequencyText(text), qrg) << text;
    for (auto [qrg, text] :
        { std::pair { "144174.0", "14417400" }, { "14025", "1402500" }, { " 1840.56 ", "184056" },
            { "10368100.0", "1036810000" }, { "0", "" }, { "-5", "" }, { "K1A", "" } })
        EXPECT_EQ(frequencyTextFromQrg(qrg), text) << qrg;
}

TEST(SpotLines, ServerChosenBySettingTwentyFour)
{
    SettingsTable s;
    s.setText(Setting::Cluster1Host, "dx.one.example");
    s.setText(Setting::Cluster1Port, "8000");
    s.setText(Setting::Cluster2Host, " dx.two.example ");
    s.setText(Setting::Cluster2Port, "7373");
    const std::tuple<int, const char*, int> cases[]
        = { { 1, "dx.one.example", 8000 }, { 2, "dx.two.example", 7373 }, { 3, "0", 0 } };
    for (auto [choice, host, port] : cases) {
        s.setInt16(Setting::ClusterChoice, choice);
        EXPECT_EQ(chooseClusterServer(s).host, host);
        EXPECT_EQ(chooseClusterServer(s).port, port);
    }
    s.setInt16(Setting::ClusterChoice, 2);
    for (const char* bad : { "73x", "70000" }) {
        s.setText(Setting::Cluster2Port, bad);
        EXPECT_EQ(chooseClusterServer(s).port, 0) << bad;
    }
}
