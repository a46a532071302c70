// Searching, sorting, filtering and saving are shown through the panel; here the exact query
// texts, the schema upgrade, the search in every alphabet and the shipped starter list.
#include "beacons/BeaconList.h"
#include "core/AdifBandPlan.h"
#include "geo/Locator.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SeedData.h"
#include "tests/beacons/BeaconDb.h"

#include <gtest/gtest.h>

TEST(BeaconList, QueryTextsAreExactWithTheirBlanks)
{
    const BeaconList::Query all = BeaconList::query("", true, "");
    EXPECT_EQ(all.sql, "SELECT beacon, Locator, qrg, Equipment FROM PNT_beacon");
    EXPECT_EQ(all.sort, "qrg  asc ");
    EXPECT_EQ(all.filter, "");
    const BeaconList::Query search = BeaconList::query("DB0", false, "%/b%");
    EXPECT_EQ(search.sql, "SELECT beacon, Locator, qrg, Equipment  FROM PNT_beacon where beacon like 'DB0%'");
    EXPECT_EQ(search.sort, "beacon  asc ");
    EXPECT_EQ(search.filter, " beacon like '%/b%'");
    // A quote is doubled so the statement stays whole.
    EXPECT_EQ(BeaconList::query("O'N", false, "").sql,
        "SELECT beacon, Locator, qrg, Equipment  FROM PNT_beacon where beacon like 'O''N%'");
    // Another alphabet: both sides folded, LIKE's own folding covers ASCII only.
    EXPECT_EQ(BeaconList::query("ØR'", false, "").sql,
        "SELECT beacon, Locator, qrg, Equipment FROM PNT_beacon where casefold(beacon) like 'ør''%'");
    EXPECT_EQ(BeaconList::presetQrg("10368%"), "10368");
}

TEST(BeaconList, OldBeaconTableIsUpgradedBeforeTheQuery)
{
    BeaconFixture f;
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    ASSERT_TRUE(f.db.exec(LogbookSchema::oldBeacons()));
    ASSERT_TRUE(f.db.exec("INSERT INTO PNT_Beacon (beacon, Locator, qrg, Equipment, XCoord, YCoord) "
                          "VALUES ('OZ7IGY/B', 'JO55WM', '144471', '', 1, 2)"));
    BeaconList::Loaded loaded = BeaconList::load(f.station.dbConnection, "", true, "");
    ASSERT_TRUE(!loaded.error && loaded.rs.first()) << loaded.error.text().toStdString();
    EXPECT_EQ(loaded.rs.text("beacon"), "OZ7IGY/B");
    EXPECT_EQ(f.db.column("GEgridXY"), QStringList({ "<null>" })); // the map columns exist now
}

TEST(BeaconList, SearchFoldsCaseForEveryLetter)
{
    BeaconFixture f;
    ASSERT_TRUE(f.db.add({ { "Ørsted/B", "JO55WM", "144471", "" }, { "ÖDE/B", "JN58TD", "432400", "" },
        { "OK1KIR/B", "JO70FD", "144430", "" }, { "Straße", "JO31", "50050", "" } }));
    const struct {
        const char* search;
        QStringList names;
    } cases[] = {
        { "ør", { "Ørsted/B" } },
        { "ØR", { "Ørsted/B" } },
        { "öde", { "ÖDE/B" } },
        { "ok1", { "OK1KIR/B" } },
        { "STRASSE", {} }, // folding keeps the LIKE rules: one letter is one letter
        { "straß", { "Straße" } },
        { "%/b", { "OK1KIR/B", "ÖDE/B", "Ørsted/B" } },
        { "_K", { "OK1KIR/B" } },
    };
    for (const auto& c : cases) {
        BeaconList::Loaded loaded
            = BeaconList::load(f.station.dbConnection, QString::fromUtf8(c.search), false, "");
        ASSERT_FALSE(loaded.error) << loaded.error.text().toStdString();
        QStringList names;
        for (bool ok = loaded.rs.first(); ok; ok = loaded.rs.next())
            names << loaded.rs.text("beacon");
        EXPECT_EQ(names, c.names) << c.search;
    }
}

// The shipped starter list: full locators (no placeholder subsquare), frequencies in a band of
// the station's band table, and the 23 cm rows of Region 1 (fields I and J) in the beacon
// segment 1296.800-1296.994 MHz.
TEST(BeaconList, StarterListEntriesArePlausible)
{
    const QList<BeaconSeed> seeds = SeedData::beacons();
    ASSERT_GE(seeds.size(), 20);
    for (const BeaconSeed& b : seeds) {
        SCOPED_TRACE(b.beacon.toStdString() + " " + b.qrg.toStdString());
        EXPECT_TRUE(b.beacon.endsWith("/B"));
        EXPECT_EQ(b.locator.size(), 6);
        EXPECT_TRUE(Locator::isValid(b.locator));
        EXPECT_NE(b.locator.mid(4), "AA") << "placeholder subsquare";
        bool ok = false;
        const double kHz = b.qrg.toDouble(&ok);
        ASSERT_TRUE(ok);
        const QString band = AdifBandPlan::bandOfKHz(kHz);
        EXPECT_FALSE(band.isEmpty());
        if (band == "23cm" && (b.locator.startsWith('I') || b.locator.startsWith('J'))) {
            EXPECT_GE(kHz, 1296800.0);
            EXPECT_LE(kHz, 1296994.0);
        }
    }
}
