#include "beacons/BeaconList.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookSchema.h"
#include "tests/beacons/BeaconDb.h"

#include <gtest/gtest.h>

namespace {

QStringList names(Recordset& rs, const QString& field = "beacon")
{
    QStringList out;
    for (bool ok = rs.first(); ok; ok = rs.next())
        out << rs.text(field);
    return out;
}

struct ListFixture : BeaconFixture {
    ListFixture()
    {
        EXPECT_TRUE(db.ok());
        EXPECT_TRUE(
            db.add({ { "OK1KIR/B", "JO70FD", "144430", "Prague" }, { "DB0ABC/B", "JO40FF", "10368050", "" },
                { "DL0XY/B", "JN49RV", "1296900", "" }, { "DM2AB", "JO62QM", "50050", "my friend" },
                { "G4ABC", "IO91WM", "432470", "" }, { "D_1X", "JN58TD", "2320100", "underscore" } }));
    }
    BeaconList::Loaded load(const QString& search, bool byQrg, const QString& nameFilter = {})
    {
        return BeaconList::load(station.dbConnection, search, byQrg, nameFilter);
    }
};

} // namespace

TEST(BeaconListQuery, TextsAreExactWithTheirBlanks)
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
    EXPECT_EQ(BeaconList::presetQrg("144%"), "144");
    EXPECT_EQ(BeaconList::presetQrg("10368%"), "10368");
}

// Sorting and the search as a LIKE pattern are shown through the panel; here the fields and
// the combination of search, filter and a quote.
TEST(BeaconListLoad, NameFilterNarrowsTheSearchResult)
{
    ListFixture f;
    BeaconList::Loaded beacons = f.load("", false, "%/b%");
    EXPECT_EQ(beacons.rs.fieldNames(), QStringList({ "beacon", "Locator", "qrg", "Equipment" }));
    EXPECT_EQ(names(beacons.rs), QStringList({ "DB0ABC/B", "DL0XY/B", "OK1KIR/B" }));
    BeaconList::Loaded both = f.load("D", true, "%/b%");
    EXPECT_EQ(names(both.rs), QStringList({ "DB0ABC/B", "DL0XY/B" }));
    BeaconList::Loaded quote = f.load("O'NEILL", false);
    EXPECT_FALSE(quote.error) << quote.error.text().toStdString();
    EXPECT_EQ(quote.rs.recordCount(), 0);
}

TEST(BeaconListLoad, OldBeaconTableIsUpgradedBeforeTheQuery)
{
    ListFixture f;
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    ASSERT_TRUE(f.db.exec(LogbookSchema::oldBeacons()));
    ASSERT_TRUE(f.db.exec("INSERT INTO PNT_Beacon (beacon, Locator, qrg, Equipment, XCoord, YCoord) "
                          "VALUES ('OZ7IGY/B', 'JO55WM', '144471', '', 1, 2)"));
    BeaconList::Loaded loaded = f.load("", true);
    ASSERT_FALSE(loaded.error) << loaded.error.text().toStdString();
    EXPECT_EQ(names(loaded.rs), QStringList({ "OZ7IGY/B" }));
    EXPECT_EQ(f.db.column("GEgridXY"), QStringList({ "<null>" })); // the map columns exist now
}

TEST(BeaconListLoad, MissingDatabaseIsAnErrorNotACrash)
{
    ListFixture f;
    BeaconList::Loaded loaded = BeaconList::load(f.dir.file("nothing.db"), "", true, "");
    EXPECT_TRUE(loaded.error);
    EXPECT_FALSE(loaded.error.description.isEmpty());
}

TEST(BeaconListLookup, FirstRecordOfTheNameWins)
{
    ListFixture f;
    ASSERT_TRUE(f.db.add({ { "OK1KIR/B", "JO70AA", "10368100", "second" } }));
    const BeaconList::Found found = BeaconList::lookup(f.station.dbConnection, "ok1kir/b");
    ASSERT_TRUE(found.found);
    EXPECT_EQ(found.locator, "JO70FD");
    EXPECT_EQ(found.qrg, "144430");
    EXPECT_FALSE(BeaconList::lookup(f.station.dbConnection, "NOSUCH").found);
    // The name goes into LIKE as it stands: "D_1X" also finds itself.
    EXPECT_EQ(BeaconList::lookup(f.station.dbConnection, "D_1X").qrg, "2320100");
    EXPECT_FALSE(BeaconList::lookup(f.station.dbConnection, "O'NEILL").error);
}

TEST(BeaconListSave, StoresTheFourBoxesAndAnEmptyName)
{
    ListFixture f;
    EXPECT_FALSE(BeaconList::save(f.station.dbConnection, { "PI7ALK/B", "144", "JO22", "Alkmaar" }));
    EXPECT_FALSE(BeaconList::save(f.station.dbConnection, { "", "", "", "" }));
    EXPECT_EQ(f.db.count(), 8);
    EXPECT_EQ(f.db.column("beacon").mid(6), QStringList({ "PI7ALK/B", "" })); // empty text, not Null
    EXPECT_EQ(f.db.column("qrg").mid(6), QStringList({ "144", "" }));
    EXPECT_EQ(f.db.column("Locator").mid(6), QStringList({ "JO22", "" }));
    EXPECT_EQ(f.db.column("Equipment").mid(6), QStringList({ "Alkmaar", "" }));
}

TEST(BeaconListSave, FailureIsReported)
{
    ListFixture f;
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    const DbError e = BeaconList::save(f.station.dbConnection, { "X", "1", "JO22", "" });
    EXPECT_TRUE(e);
}
