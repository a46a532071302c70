// Every SQL text of the program runs on a real database and returns what the windows rely on.
#include "DbTestSupport.h"
#include "logbook/db/SeedData.h"

namespace {

class DbSqlText : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(db.created);
        ASSERT_TRUE(db.add({ contact("G4ABC", "IO91WM", "144", { { "QSL", "Q" }, { "DXCC", "England" } }),
            contact("DL1ABC", "JO62QM", "144", { { "QSL", "Y" }, { "DXCC", "Fed. Rep. of Germany" } }),
            contact("OK1XYZ", "jn79", "432", { { "QSL", "q" }, { "DXCC", "Czech Republic" } }),
            contact("dl5xy", "", "144", { { "QSL", "T" }, { "DXCC", "" } }),
            contact("F6ABC", "JN18", "1296", { { "QSL", "T" }, { "DXCC", "France" } }),
            contact("O'NEILL", "", "14200", { { "QSL", "Y" }, { "DXCC", "" } }) }));
    }

    Recordset open(const QString& sql)
    {
        Recordset rs(db.path());
        EXPECT_TRUE(rs.open(sql)) << rs.errorText().toStdString();
        return rs;
    }

    TestDb db;
};

TEST(DbSqlTexts, BuiltTextsAreByteExactWithQuotesDoubled)
{
    EXPECT_EQ(SqlText::dxccLookup("DL1ABC"), "SELECT * FROM dxccdata where 'DL1ABC' like dxcccode ");
    EXPECT_EQ(SqlText::searchByCallsign("O'N"), "select * from logtab where  callsign like 'O''N%'");
    EXPECT_EQ(SqlText::searchByGrid("JO"), "select * from logtab where  Grid like 'JO%'");
    EXPECT_EQ(SqlText::qslRun("T"), "select  *  from logtab where  QSL like 'T' order by callsign");
    EXPECT_EQ(SqlText::bandFilter(""), " band like ''");
    EXPECT_EQ(SqlText::logListFilter(""), "");
    EXPECT_EQ(SqlText::logListFilter("10140"), " band like '10140'");
}

// Column counts are compared in DbUpgradeTest; the beacon list's texts in the beacon tests.
TEST_F(DbSqlText, CountTextAndTheSeededBeaconsAreBeacons)
{
    EXPECT_EQ(open(SqlText::LogList).recordCount(), 6);
    EXPECT_EQ(open(SqlText::LogTabCount).fieldCount(), 36) << "34 and the two columns of migration 2";
    Recordset beacons = open(SqlText::Beacons);
    EXPECT_GE(beacons.recordCount(), 24);
    EXPECT_EQ(beacons.recordCount(), SeedData::beacons().size());
    EXPECT_EQ(open(SqlText::BeaconMap).recordCount(), beacons.recordCount());
    ASSERT_TRUE(beacons.setFilter(SqlText::beaconNameFilter(SqlText::BeaconsOnlyPattern)));
    EXPECT_EQ(beacons.recordCount(), SeedData::beacons().size()) << "every seeded beacon carries /B";
}

TEST_F(DbSqlText, DxccLookupHasTheCallsignLeftOfLike)
{
    Recordset rs = open(SqlText::dxccLookup("DL1ABC"));
    ASSERT_FALSE(rs.atEnd());
    EXPECT_EQ(rs.text(1), "DL%");
    EXPECT_EQ(rs.text(2), "Fed. Rep. of Germany");
    Recordset none = open(SqlText::dxccLookup("Q9ZZZ"));
    EXPECT_EQ(none.recordCount(), 0);
    EXPECT_TRUE(none.text(2).isEmpty());
    EXPECT_EQ(none.error().number, DbErrorNumber::NoCurrentRecord);
    Recordset all = open(SqlText::DxccAll);
    EXPECT_EQ(all.recordCount(), SeedData::dxccRows(SeedData::ctyText()).size());
    EXPECT_EQ(all.fieldName(1), "dxcccode");
}

TEST_F(DbSqlText, OrderByFormsWithoutBlankEntityListsAndQslRun)
{
    Recordset all = open(SqlText::LogWithGrid);
    EXPECT_EQ(fieldColumn(all, "Grid"), (QStringList { "IO91WM", "JN18", "jn79", "JO62QM" }));
    EXPECT_EQ(
        fieldColumn(open(SqlText::LogWithGridConfirmed), "Callsign"), (QStringList { "G4ABC", "OK1XYZ" }))
        << "like'q' matches Q and q";
    ASSERT_TRUE(all.setFilter(SqlText::logListFilter("144%")));
    EXPECT_EQ(fieldColumn(all, "Grid"), (QStringList { "IO91WM", "JO62QM" }))
        << "the filter keeps the query's own order";
    EXPECT_EQ(fieldColumn(open(SqlText::LogWithDxcc), "dxcc"),
        (QStringList { "Czech Republic", "England", "Fed. Rep. of Germany", "France" }));
    EXPECT_EQ(fieldColumn(open(SqlText::LogWithDxccConfirmed), "DXCC"),
        (QStringList { "Czech Republic", "England" }));
    EXPECT_EQ(fieldColumn(open(SqlText::qslRun("T")), "Callsign"), (QStringList { "dl5xy", "F6ABC" }))
        << "ordered by callsign without case";
}

} // namespace
