// Every SQL text of the program runs on a real database and returns what the windows rely on.
#include "DbTestSupport.h"
#include "logbook/db/SeedData.h"
#include "tests/support/TempDir.h"

namespace {

class DbSqlText : public ::testing::Test {
protected:
    void SetUp() override
    {
        path = tmp.file(QStringLiteral("backup.db"));
        DbError e;
        ASSERT_TRUE(DatabaseFile::create(path, &e)) << e.text().toStdString();
        addContacts(path,
            { { "03.01.2026", "G4ABC", "IO91WM", "144", "Q", "England" },
                { "15.11.2025", "DL1ABC", "JO62QM", "144", "Y", "Fed. Rep. of Germany" },
                { "20.02.2026", "OK1XYZ", "jn79", "432", "q", "Czech Republic" },
                { "28.12.2025", "dl5xy", "", "144", "T", "" },
                { "01.03.2024", "F6ABC", "JN18", "1296", "T", "France" },
                { "02.03.2024", "O'NEILL", "", "14200", "Y", "" } });
    }

    Recordset open(const QString& sql)
    {
        Recordset rs(path);
        EXPECT_TRUE(rs.open(sql)) << rs.errorText().toStdString();
        return rs;
    }

    TempDir tmp;
    QString path;
};

TEST_F(DbSqlText, TextsAreByteExact)
{
    EXPECT_EQ(SqlText::dxccLookup(QStringLiteral("DL1ABC")),
        QStringLiteral("SELECT * FROM dxccdata where 'DL1ABC' like dxcccode "));
    EXPECT_EQ(SqlText::searchByCallsign(QStringLiteral("DL")),
        QStringLiteral("select * from logtab where  callsign like 'DL%'"));
    EXPECT_EQ(SqlText::searchByGrid(QStringLiteral("JO")),
        QStringLiteral("select * from logtab where  Grid like 'JO%'"));
    EXPECT_EQ(SqlText::beaconSearch(QStringLiteral("OZ")),
        QStringLiteral("SELECT beacon, Locator, qrg, Equipment  FROM PNT_beacon where beacon like 'OZ%'"));
    EXPECT_EQ(SqlText::beaconLookup(QStringLiteral("GB3VHF/B")),
        QStringLiteral("SELECT * FROM PNT_beacon where beacon like 'GB3VHF/B'"));
    EXPECT_EQ(SqlText::qslRun(QStringLiteral("T")),
        QStringLiteral("select  *  from logtab where  QSL like 'T' order by callsign"));
    EXPECT_EQ(SqlText::bandFilter(QString()), QStringLiteral(" band like ''"));
    EXPECT_EQ(SqlText::logListFilter(QString()), QString());
    EXPECT_EQ(SqlText::logListFilter(QStringLiteral("10140")), QStringLiteral(" band like '10140'"));
    EXPECT_EQ(SqlText::beaconNameFilter(SqlText::BeaconsOnlyPattern), QStringLiteral(" beacon like '%/b%'"));
    EXPECT_EQ(SqlText::LogWithGrid, QStringLiteral("select *  from logtab where grid <> ''order by grid"));
    EXPECT_EQ(SqlText::DxccAll, QStringLiteral("SELECT * FROM dxccdata  "));
    EXPECT_EQ(SqlText::LogListSort, QStringLiteral("date  desc "));
    // Spliced values have their quotes doubled.
    EXPECT_EQ(SqlText::searchByCallsign(QStringLiteral("O'N")),
        QStringLiteral("select * from logtab where  callsign like 'O''N%'"));
}

TEST_F(DbSqlText, LogTablesAndCountsHaveTheCurrentColumns)
{
    Recordset log = open(SqlText::LogList);
    EXPECT_EQ(log.fieldCount(), 34);
    EXPECT_EQ(log.recordCount(), 6);
    Recordset count = open(SqlText::LogTabCount);
    EXPECT_EQ(count.fieldCount(), 34);
    Recordset beacons = open(SqlText::Beacons);
    EXPECT_EQ(beacons.fieldCount(), 9);
    EXPECT_EQ(beacons.recordCount(), SeedData::beacons().size());
    EXPECT_GE(beacons.recordCount(), 24);
    Recordset map = open(SqlText::BeaconMap);
    EXPECT_EQ(map.recordCount(), beacons.recordCount());
}

TEST_F(DbSqlText, BeaconListSearchAndLookup)
{
    Recordset list = open(SqlText::BeaconList);
    EXPECT_EQ(list.fieldNames(), (QStringList { "beacon", "Locator", "qrg", "Equipment" }));
    Recordset search = open(SqlText::beaconSearch(QStringLiteral("oz7")));
    EXPECT_EQ(search.recordCount(), 10) << "the name search ignores case";
    ASSERT_TRUE(search.setSort(SqlText::BeaconSortQrg));
    EXPECT_EQ(search.text(QStringLiteral("QRG")), QStringLiteral("10368930")) << "qrg sorts as text";
    Recordset lookup = open(SqlText::beaconLookup(QStringLiteral("GB3VHF/B")));
    ASSERT_EQ(lookup.recordCount(), 1);
    EXPECT_EQ(lookup.text(QStringLiteral("locator")), QStringLiteral("JO01DH"));
    EXPECT_EQ(lookup.text(QStringLiteral("QRG")), QStringLiteral("144430"));
    ASSERT_TRUE(list.setFilter(SqlText::beaconNameFilter(SqlText::BeaconsOnlyPattern)));
    EXPECT_EQ(list.recordCount(), SeedData::beacons().size()) << "every seeded beacon carries /B";
}

TEST_F(DbSqlText, DxccLookupHasTheCallsignLeftOfLike)
{
    Recordset rs = open(SqlText::dxccLookup(QStringLiteral("DL1ABC")));
    ASSERT_FALSE(rs.atEnd());
    EXPECT_EQ(rs.text(1), QStringLiteral("DL%"));
    EXPECT_EQ(rs.text(2), QStringLiteral("Fed. Rep. of Germany"));
    Recordset none = open(SqlText::dxccLookup(QStringLiteral("Q9ZZZ")));
    EXPECT_EQ(none.recordCount(), 0);
    EXPECT_TRUE(none.text(2).isEmpty());
    EXPECT_EQ(none.error().number, DbErrorNumber::NoCurrentRecord);
    Recordset all = open(SqlText::DxccAll);
    EXPECT_EQ(all.recordCount(), SeedData::dxccRows().size());
    EXPECT_EQ(all.fieldName(1), QStringLiteral("dxcccode"));
}

TEST_F(DbSqlText, StarPatternsAreRewrittenThroughTheRecordset)
{
    ASSERT_TRUE(execAll(
        path, { QStringLiteral("INSERT INTO dxccdata (dxcccode, Country) VALUES ('Q9*', 'Testland')") }));
    EXPECT_EQ(open(SqlText::dxccLookup(QStringLiteral("Q9AB"))).recordCount(), 0)
        << "'*' is no LIKE wildcard";
    Recordset all = open(SqlText::DxccAll);
    int rewritten = 0;
    for (bool ok = all.first(); ok; ok = all.next()) {
        const QString code = all.text(1);
        if (code.endsWith(QLatin1Char('*'))) {
            ASSERT_TRUE(all.setValue(1, code.left(code.size() - 1) + QLatin1Char('%')));
            ASSERT_TRUE(all.update()) << all.errorText().toStdString();
            ++rewritten;
        }
    }
    EXPECT_EQ(rewritten, 1);
    Recordset rs = open(SqlText::dxccLookup(QStringLiteral("Q9AB")));
    EXPECT_EQ(rs.text(2), QStringLiteral("Testland"));
}

TEST_F(DbSqlText, SearchesByCallsignAndLocatorBeginning)
{
    Recordset calls = open(SqlText::searchByCallsign(QStringLiteral("DL")));
    EXPECT_EQ(calls.recordCount(), 2) << "LIKE ignores case: DL1ABC and dl5xy";
    Recordset quote = open(SqlText::searchByCallsign(QStringLiteral("O'NE")));
    EXPECT_EQ(quote.recordCount(), 1);
    Recordset grids = open(SqlText::searchByGrid(QStringLiteral("JN")));
    QStringList found = fieldColumn(grids, QStringLiteral("callsign"));
    found.sort();
    EXPECT_EQ(found, (QStringList { "F6ABC", "OK1XYZ" }));
    Recordset nothing = open(SqlText::searchByCallsign(QStringLiteral("ZZ")));
    EXPECT_EQ(nothing.recordCount(), 0);
}

TEST_F(DbSqlText, OrderByFormsWithoutBlankWork)
{
    Recordset all = open(SqlText::LogWithGrid);
    EXPECT_EQ(fieldColumn(all, QStringLiteral("Grid")), (QStringList { "IO91WM", "JN18", "jn79", "JO62QM" }));
    Recordset confirmed = open(SqlText::LogWithGridConfirmed);
    EXPECT_EQ(fieldColumn(confirmed, QStringLiteral("Callsign")), (QStringList { "G4ABC", "OK1XYZ" }))
        << "like'q' matches Q and q";
    ASSERT_TRUE(all.setFilter(SqlText::logListFilter(QStringLiteral("144%"))));
    EXPECT_EQ(fieldColumn(all, QStringLiteral("Grid")), (QStringList { "IO91WM", "JO62QM" }))
        << "the filter keeps the query's own order";
}

TEST_F(DbSqlText, DxccEntityListsAndQslRun)
{
    Recordset worked = open(SqlText::LogWithDxcc);
    EXPECT_EQ(fieldColumn(worked, QStringLiteral("dxcc")),
        (QStringList { "Czech Republic", "England", "Fed. Rep. of Germany", "France" }));
    Recordset confirmed = open(SqlText::LogWithDxccConfirmed);
    EXPECT_EQ(fieldColumn(confirmed, QStringLiteral("DXCC")), (QStringList { "Czech Republic", "England" }));
    Recordset cards = open(SqlText::qslRun(QStringLiteral("T")));
    EXPECT_EQ(fieldColumn(cards, QStringLiteral("Callsign")), (QStringList { "dl5xy", "F6ABC" }))
        << "ordered by callsign without case";
}

} // namespace
