// Searching, sorting, filtering and saving are shown through the panel; here the exact query
// texts, the schema upgrade and the lookup of a chosen name.
#include "beacons/BeaconList.h"
#include "logbook/db/LogbookSchema.h"
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

TEST(BeaconList, LookupTakesTheFirstRecordOfTheNameAsALikePattern)
{
    BeaconFixture f;
    ASSERT_TRUE(
        f.db.add({ { "OK1KIR/B", "JO70FD", "144430", "" }, { "OK1KIR/B", "JO70AA", "10368100", "" } }));
    const BeaconList::Found found = BeaconList::lookup(f.station.dbConnection, "ok1kir/b");
    EXPECT_TRUE(found.found && found.locator == "JO70FD" && found.qrg == "144430");
    EXPECT_FALSE(BeaconList::lookup(f.station.dbConnection, "NOSUCH").found);
    EXPECT_FALSE(BeaconList::lookup(f.station.dbConnection, "O'NEILL").error);
}
