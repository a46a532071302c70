#include "cluster/SpotLines.h"
#include "core/SettingsTable.h"

#include <gtest/gtest.h>

using namespace SpotLines;

TEST(SpotLines, TagPerPropagationOption)
{
    EXPECT_EQ(propagationTag(1), "<Tr>");
    EXPECT_EQ(propagationTag(2), "<Rs>");
    EXPECT_EQ(propagationTag(3), "<Es>");
    EXPECT_EQ(propagationTag(0), "");
    EXPECT_EQ(propagationTag(4), "");
}

TEST(SpotLines, BothLinesCutTheLocatorToSixCharacters)
{
    EXPECT_EQ(fromBoxes("144300.0", "DL1ABC", 1, "JO62QM12"), "dx 144300.0 DL1ABC<Tr>JO62QM");
    EXPECT_EQ(
        fromSpot("144174.0", "SP9ABC", "JO90KA", 3, "JO62QM12AB"), "dx 144174.0 SP9ABC JO90KA<Es>JO62QM");
    // Shorter locators go in whole; an empty remark still leaves its blank.
    EXPECT_EQ(fromBoxes("50110.0", "VK4ABC", 2, "JO62"), "dx 50110.0 VK4ABC<Rs>JO62");
    EXPECT_EQ(fromSpot("", "", "", 2, ""), "dx   <Rs>");
}

TEST(SpotLines, QrgFromTheMainWindowsTenHertzText)
{
    EXPECT_EQ(qrgFromFrequencyText("14410000"), "144100.0");
    EXPECT_EQ(qrgFromFrequencyText("14417460"), "144174.6");
    EXPECT_EQ(qrgFromFrequencyText("184000"), "1840.0");
    EXPECT_EQ(qrgFromFrequencyText("12225000000"), "122250000.0");
    EXPECT_EQ(qrgFromFrequencyText("007"), "0.0");
    EXPECT_EQ(qrgFromFrequencyText(" 1 441 000 0"), "144100.0");
    EXPECT_EQ(qrgFromFrequencyText(""), "");
    EXPECT_EQ(qrgFromFrequencyText("abc"), "");
}

TEST(SpotLines, SpotFrequencyBackToTenHertzText)
{
    EXPECT_EQ(frequencyTextFromQrg("144174.0"), "14417400");
    EXPECT_EQ(frequencyTextFromQrg("14025"), "1402500");
    EXPECT_EQ(frequencyTextFromQrg(" 1840.56 "), "184056");
    EXPECT_EQ(frequencyTextFromQrg("10368100.0"), "1036810000");
    EXPECT_EQ(frequencyTextFromQrg("0"), "");
    EXPECT_EQ(frequencyTextFromQrg("-5"), "");
    EXPECT_EQ(frequencyTextFromQrg("K1A"), "");
}

TEST(SpotLines, ServerChosenBySettingTwentyFour)
{
    SettingsTable s;
    s.setText(Setting::Cluster1Host, "dx.one.example");
    s.setText(Setting::Cluster1Port, "8000");
    s.setText(Setting::Cluster2Host, " dx.two.example ");
    s.setText(Setting::Cluster2Port, "7373");

    s.setInt16(Setting::ClusterChoice, 1);
    ClusterServer one = chooseClusterServer(s);
    EXPECT_EQ(one.host, "dx.one.example");
    EXPECT_EQ(one.port, 8000);

    s.setInt16(Setting::ClusterChoice, 2);
    ClusterServer two = chooseClusterServer(s);
    EXPECT_EQ(two.host, "dx.two.example");
    EXPECT_EQ(two.port, 7373);

    s.setInt16(Setting::ClusterChoice, 3);
    ClusterServer none = chooseClusterServer(s);
    EXPECT_EQ(none.host, "0");
    EXPECT_EQ(none.port, 0);

    s.setInt16(Setting::ClusterChoice, 2);
    s.setText(Setting::Cluster2Port, "73x");
    EXPECT_EQ(chooseClusterServer(s).port, 0);
    s.setText(Setting::Cluster2Port, "70000");
    EXPECT_EQ(chooseClusterServer(s).port, 0);
}
