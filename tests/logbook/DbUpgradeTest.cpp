// The schema upgrade on real files: the row-based column count is the only guard.
#include "DbTestSupport.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SchemaUpgrade.h"

namespace {

// A table of n text columns c0..c(n-1).
QString tableOf(const QString& name, int n)
{
    QStringList cols;
    for (int i = 0; i < n; ++i)
        cols << QStringLiteral("c%1 TEXT").arg(i);
    return QStringLiteral("CREATE TABLE %1 (%2)").arg(name, cols.join(QStringLiteral(", ")));
}

class DbUpgrade : public ::testing::Test {
protected:
    void SetUp() override { path = tmp.file(QStringLiteral("old.db")); }

    // The old tables (31 and 8 columns), with a row in each or empty.
    void makeOld(bool withRows)
    {
        QStringList sql
            = { LogbookSchema::oldLogtab(), LogbookSchema::oldBeacons(), LogbookSchema::dxccTable() };
        if (withRows)
            sql << "INSERT INTO logtab (Date, Callsign, Band) VALUES ('2026-11-15', 'DL1ABC', '144')"
                << "INSERT INTO PNT_Beacon (beacon, Locator, qrg, XCoord, YCoord) VALUES "
                   "('GB3VHF/B', 'JO01DH', '144430', 0.4, 51.3)";
        ASSERT_TRUE(execAll(path, sql, true));
    }

    TempDir tmp;
    QString path;
};

TEST_F(DbUpgrade, StatementsRunInTheirOrder)
{
    EXPECT_EQ(SchemaUpgrade::logtabStatements(),
        (QStringList { "ALTER TABLE logtab ADD COLUMN GEdata text(250);",
            "ALTER TABLE logtab ADD COLUMN GEpoly text(250);",
            "ALTER TABLE logtab ADD COLUMN GEgridXY text(250);" }));
    EXPECT_EQ(SchemaUpgrade::beaconStatements(),
        (QStringList { "ALTER TABLE PNT_Beacon DROP COLUMN XCoord ",
            "ALTER TABLE PNT_Beacon DROP COLUMN YCoord ",
            "ALTER TABLE PNT_Beacon ADD COLUMN GEpoly text(250);",
            "ALTER TABLE PNT_Beacon ADD COLUMN GEdata text(250);",
            "ALTER TABLE PNT_Beacon ADD COLUMN GEgridXY text(250);" }));
}

TEST_F(DbUpgrade, OldTablesWithARowGainTheMapColumnsOnceAndMatchTheCurrentSchema)
{
    makeOld(true);
    SchemaUpgrade::Result r = SchemaUpgrade::check(path);
    ASSERT_FALSE(r.error) << r.error.text().toStdString();
    EXPECT_EQ(r.logtabCount, 31);
    EXPECT_EQ(r.beaconCount, 8);
    EXPECT_TRUE(r.logtabUpgraded && r.beaconsUpgraded);
    const QStringList log = tableColumns(path, "logtab");
    ASSERT_EQ(log.size(), 34);
    EXPECT_EQ(log.mid(31), (QStringList { "GEdata text(250)", "GEpoly text(250)", "GEgridXY text(250)" }));
    const QStringList beacons = tableColumns(path, "PNT_Beacon");
    EXPECT_EQ(beacons,
        (QStringList { "ID INTEGER", "beacon TEXT", "Locator TEXT", "qrg TEXT", "Equipment TEXT", "Mode TEXT",
            "GEpoly text(250)", "GEdata text(250)", "GEgridXY text(250)" }));
    Recordset rs(path);
    ASSERT_TRUE(rs.open(SqlText::LogList));
    EXPECT_EQ(rs.text("callsign"), "DL1ABC") << "the stored row is kept";
    ASSERT_TRUE(rs.open(SqlText::Beacons));
    EXPECT_EQ(rs.text("Beacon"), "GB3VHF/B");

    r = SchemaUpgrade::check(path);
    EXPECT_FALSE(r.error);
    EXPECT_EQ(r.logtabCount, 34);
    EXPECT_EQ(r.beaconCount, 9);
    EXPECT_FALSE(r.logtabUpgraded || r.beaconsUpgraded) << "nothing runs at the next start";
}

TEST_F(DbUpgrade, EmptyOldTablesStayUntilTheyHaveARow)
{
    makeOld(false);
    const SchemaUpgrade::Result r = SchemaUpgrade::check(path);
    EXPECT_FALSE(r.error);
    EXPECT_EQ(r.logtabCount, 0);
    EXPECT_EQ(r.beaconCount, 0);
    EXPECT_FALSE(r.logtabUpgraded || r.beaconsUpgraded);
    EXPECT_EQ(tableColumns(path, QStringLiteral("logtab")).size(), 31);
    EXPECT_EQ(tableColumns(path, QStringLiteral("PNT_Beacon")).size(), 8);
}

TEST_F(DbUpgrade, OtherColumnCountsAreNeverTouched)
{
    for (int n : { 30, 32, 33 }) {
        const QString file = tmp.file(QStringLiteral("n%1.db").arg(n));
        ASSERT_TRUE(execAll(file,
            { tableOf(QStringLiteral("logtab"), n), tableOf(QStringLiteral("PNT_Beacon"), n - 23),
                QStringLiteral("INSERT INTO logtab (c0) VALUES ('x')"),
                QStringLiteral("INSERT INTO PNT_Beacon (c0) VALUES ('x')") },
            true));
        const SchemaUpgrade::Result r = SchemaUpgrade::check(file);
        EXPECT_FALSE(r.error) << n;
        EXPECT_EQ(r.logtabCount, n);
        EXPECT_FALSE(r.logtabUpgraded || r.beaconsUpgraded) << n;
        EXPECT_EQ(tableColumns(file, QStringLiteral("logtab")).size(), n);
        EXPECT_EQ(tableColumns(file, QStringLiteral("PNT_Beacon")).size(), n - 23);
    }
}

TEST_F(DbUpgrade, FailingUpgradeIsReportedAndLeavesTheTableAsItWas)
{
    // 31 columns, one of them already GEpoly: the second statement fails.
    ASSERT_TRUE(execAll(path,
        { tableOf("logtab", 30).chopped(1) + ", GEpoly TEXT)", LogbookSchema::oldBeacons(),
            "INSERT INTO logtab (c0) VALUES ('keep')" },
        true));
    const SchemaUpgrade::Result r = SchemaUpgrade::check(path);
    ASSERT_TRUE(r.error);
    EXPECT_TRUE(r.error.description.contains(QStringLiteral("duplicate column name: GEpoly")))
        << r.error.description.toStdString();
    EXPECT_EQ(tableColumns(path, QStringLiteral("logtab")).size(), 31) << "GEdata was taken back";
    EXPECT_FALSE(r.logtabUpgraded);
}

} // namespace
