// The log list, the search, the prefix pattern conversion and the grid's column widths, on a
// real database file.
#include "EntryTestDb.h"
#include "logbook/browse/DxccLookup.h"
#include "logbook/browse/GridColumns.h"
#include "logbook/browse/LogList.h"
#include "logbook/browse/LogSearch.h"

namespace {

QStringList calls(const Recordset& rs)
{
    return fieldColumn(rs, "Callsign");
}

class SearchDb : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(db.created);
        ASSERT_TRUE(db.add({ contact("DL1ABC", "JO62QM", "144", { { "Date", "2026-01-02" } }),
            contact("DL1XYZ", "JN48OW", "14200", { { "Date", "2026-03-04" } }),
            contact("DK2AA", "JO31", "144", { { "Date", "2026-02-03" } }),
            contact("O'NEILL", "IO91", "144", { { "Date", "2025-12-31" } }),
            contact("G4ABC", "", "10140", { { "Date", "2026-05-06" } }) }));
    }
    EntryTestDb db;
};

} // namespace

TEST_F(SearchDb, LogListIsTheBandNewestFirstAndSearchFindsBeginnings)
{
    const Recordset rs = LogList::open(db.path(), "144%");
    ASSERT_FALSE(rs.hasError()) << rs.errorText().toStdString();
    EXPECT_EQ(calls(rs), (QStringList { "DK2AA", "DL1ABC", "O'NEILL" }));
    EXPECT_EQ(rs.sort(), "date  desc ");
    EXPECT_EQ(LogList::open(db.path(), "").recordCount(), 5);
    EXPECT_EQ(LogList::open(db.path(), "10140").recordCount(), 1);
    EXPECT_TRUE(LogList::open(db.dir.file("none.db"), "").hasError());
    EXPECT_TRUE(DxccLookup::lookup(db.dir.file("none.db"), "DL1ABC").error.isError());

    auto search = [&](const char* text, int by, const char* band) {
        QStringList found = calls(LogSearch::open(db.path(), LogSearch::plan(text, by, band)));
        found.sort();
        return found;
    };
    EXPECT_EQ(search("dl1", LogSearch::ByCallsign, ""), (QStringList { "DL1ABC", "DL1XYZ" }));
    EXPECT_EQ(search("DL1", LogSearch::ByCallsign, "144%"), (QStringList { "DL1ABC" }));
    EXPECT_EQ(search("JO", LogSearch::ByLocator, "144%"), (QStringList { "DK2AA", "DL1ABC" }));
}

TEST_F(SearchDb, OldStarPatternsBecomePercentPatterns)
{
    EXPECT_EQ(DxccLookup::convertedPattern("DL*"), "DL%");
    EXPECT_EQ(DxccLookup::convertedPattern("DL%"), "DL%");
    EXPECT_EQ(DxccLookup::convertedPattern("*"), "%");
    ASSERT_TRUE(db.add({ { { "dxcccode", "QQ*" }, { "Country", "Testland" } } }, "dxccdata"));
    // The "*" form is no wildcard: only the literal text finds the row, which is rewritten at once.
    EXPECT_EQ(DxccLookup::lookup(db.path(), "QQ*").rewritten, 1);
    EXPECT_EQ(DxccLookup::convertPatterns(db.path()), 0);
}

TEST(SearchGrid, ColumnFourteenIsSetTwiceAndTheSecondHolds)
{
    const QList<ColumnWidth> steps = GridColumns::steps();
    ASSERT_EQ(steps.size(), 17);
    EXPECT_EQ(steps[14].column, 14);
    EXPECT_EQ(steps[14].twips, 1200);
    EXPECT_EQ(steps[16].column, 14);
    EXPECT_EQ(steps[16].twips, 2500);
    EXPECT_EQ(GridColumns::finalTwips(),
        (QList<int> { 10, 900, 450, 1000, 1100, 500, 500, 1300, 500, 1200, 700, 700, 500, 400, 2500, 500 }));
    EXPECT_EQ(GridColumns::toPixels(2500, 96), 167);
}
