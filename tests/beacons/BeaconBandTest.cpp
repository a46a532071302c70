#include "beacons/BeaconBand.h"

#include <gtest/gtest.h>

TEST(BeaconBand, LeadingDigitsPickTheFirstBandInTableOrder)
{
    struct Case {
        const char* qrg;
        const char* band; // "" for none
        int vhf;
        int microwave;
    };
    const Case cases[] = { { "50471", "50", 1, 0 }, { "144471", "144", 2, 0 },
        { "1440", "144", 2, 0 }, // 144 is tested before 1296 and wins
        { "432471", "432", 3, 0 }, { "1296930", "1296", 0, 1 }, { "2320930", "2320", 0, 2 },
        { "3400930", "3400", 0, 3 }, { "5760930", "5760", 0, 4 }, { "10368930", "10368", 0, 5 },
        { "24048930", "24048", 0, 6 }, { "47088100", "47088", 0, 7 }, { "76032100", "76032", 0, 8 },
        { "122250100", "122250", 0, 9 }, { "70021", "" }, { "14", "" }, { "", "" }, { " 144471", "" },
        { "1297000", "" }, { "10369000", "" }, { "abc", "" } };
    for (const Case& c : cases) {
        const std::optional<BeaconBand> band = BeaconBandFor(QString::fromLatin1(c.qrg));
        ASSERT_EQ(band.has_value(), *c.band != 0) << c.qrg;
        if (!band)
            continue;
        EXPECT_EQ(band->value, QString::fromLatin1(c.band)) << c.qrg;
        EXPECT_EQ(band->vhfOption, c.vhf) << c.qrg;
        EXPECT_EQ(band->microwaveOption, c.microwave) << c.qrg;
    }
}

TEST(BeaconBand, KilohertzTextBecomesTheRigCounter)
{
    for (const auto& [text, counter] : { std::pair { "144471", 14447100 }, { "144471.5", 14447150 },
             { "144471,55", 14447155 }, { " 432471 ", 43247100 } })
        EXPECT_EQ(BeaconCounterFor(text), counter) << text;
    for (const char* bad : { "", "144 MHz", "-144" })
        EXPECT_FALSE(BeaconCounterFor(bad).has_value()) << bad;

    // 4 m has no band button: the rig still takes the frequency, the band stays.
    const std::optional<BeaconTuning> fourMetres = BeaconTuningFor("70021");
    EXPECT_TRUE(fourMetres && !fourMetres->band && fourMetres->counter == 7002100);
    const std::optional<BeaconTuning> odd = BeaconTuningFor("144xyz"); // the band follows, not the QRG
    EXPECT_TRUE(odd && odd->band && odd->band->vhfOption == 2 && !odd->counter);
    EXPECT_FALSE(BeaconTuningFor("xyz").has_value());
}
