#include "core/AdifBandPlan.h"

#include <gtest/gtest.h>

// Frequencies where the cluster's and the logbook's band tables used to disagree, and the
// edges of the bands they disagreed on.
TEST(AdifBandPlan, SampleFrequenciesAndEdges)
{
    const struct {
        double kHz;
        const char* band;
    } cases[] = { { 136.0, "2190m" }, { 475.0, "630m" }, { 502.0, "560m" }, { 1840.0, "160m" },
        { 5060.0, "60m" }, { 5300.0, "60m" }, { 5059.999, "" }, { 10140.0, "30m" }, { 40680.0, "8m" },
        { 50313.0, "6m" }, { 54000.0, "6m" }, { 54000.001, "5m" }, { 60000.0, "5m" }, { 70021.0, "4m" },
        { 144300.0, "2m" }, { 220500.0, "" }, { 222100.0, "1.25m" }, { 1296930.0, "23cm" },
        { 24048930.0, "1.25cm" }, { 81200000.0, "" }, { 120000000.0, "2.5mm" }, { 145000000.0, "2mm" },
        { 241500000.0, "1mm" }, { 7500000000.0, "submm" }, { 7500000001.0, "" }, { 0.0, "" },
        { -14000.0, "" } };
    for (const auto& c : cases) {
        EXPECT_EQ(AdifBandPlan::bandOfKHz(c.kHz), QString::fromLatin1(c.band)) << c.kHz;
        EXPECT_EQ(AdifBandPlan::bandOfMHz(c.kHz / 1000.0), QString::fromLatin1(c.band)) << c.kHz;
    }
}

TEST(AdifBandPlan, NamesInOrderAndLookupWithoutCase)
{
    const QStringList names = AdifBandPlan::names();
    ASSERT_EQ(names.size(), 33);
    EXPECT_EQ(names.first(), "2190m");
    EXPECT_EQ(names.last(), "submm");
    EXPECT_EQ(names.indexOf("1.25cm"), 26);
    EXPECT_FALSE(names.contains("1.2cm"));
    for (const AdifBandPlan::Band& b : AdifBandPlan::bands())
        EXPECT_LT(b.lowHz, b.highHz) << b.name;
    ASSERT_TRUE(AdifBandPlan::find("23CM"));
    EXPECT_EQ(AdifBandPlan::find("23CM")->lowHz, 1240000000);
    EXPECT_FALSE(AdifBandPlan::find("1.2cm"));
}
