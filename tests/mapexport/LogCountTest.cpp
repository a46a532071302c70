#include "mapexport/LogCount.h"
#include "logbook/db/DbConnection.h"
#include "mapexport/LogMapFields.h"
#include "tests/mapexport/LogDb.h"

#include <QSqlQuery>
#include <gtest/gtest.h>

namespace {
const QString ring48 = "8.0,48.0,2000 10.0,48.0,2000 10.0,49.0,2000 8.0,49.0,2000 8.0,48.0,2000 ";
}

TEST(LogCount, SquaresInLocatorOrderShowRunsAndOutlineFirstOfEach)
{
    LogDb db;
    // Entered out of order: the query sorts them JN48AA, JN48BB, JN49, JO50AA.
    ASSERT_TRUE(db.add({ { "JO50AA" }, { "JN48BB", "144", "", "", "", "", "kept" }, { "JN49" }, { "JN48AA" },
        { "", "144" }, { "JN47", "432" } }));
    LogMapFields f;
    EXPECT_EQ(SQNr(db.station, f, "144%", ""), LogCount::State::Done);
    EXPECT_EQ(f.sqw, "3");
    const QStringList p = db.polys();
    EXPECT_TRUE(p[0].startsWith("10.0,50.0,2000 12.0,50.0,2000 ")) << p[0].toStdString(); // JO50
    EXPECT_EQ(p[1], "kept"); // the second JN48 in locator order keeps what it held
    EXPECT_TRUE(p[2].startsWith("8.0,49.0,2000 ")); // JN49
    EXPECT_EQ(p[3], ring48); // JN48AA sorts first in its square
    EXPECT_EQ(p[4], ""); // no locator: not selected
    EXPECT_EQ(p[5], ""); // another band
    EXPECT_FALSE(db.station.homeCoords.isEmpty());
    EXPECT_TRUE(db.prompts.shown.isEmpty());
}

TEST(LogCount, CaseMattersAndConfirmedCountsLikeQ)
{
    LogDb db;
    ASSERT_TRUE(db.add({ { "JN48", "144", "Q" }, { "jn48", "144", "q" }, { "JN49", "144", "D" } }));
    LogMapFields f;
    SQNr(db.station, f, "144%", "");
    EXPECT_EQ(f.sqw, "3"); // JN48, jn48 (two squares), JN49
    EXPECT_EQ(SQNQr(db.station, f, "144%", ""), LogCount::State::Done);
    EXPECT_EQ(f.sqc, "2");
    EXPECT_EQ(db.polys()[1], ring48); // the outline of jn48 is stored too, upper-cased for the conversion
}

TEST(LogCount, EntityCountsHaveNoOffByOne)
{
    LogDb db;
    ASSERT_TRUE(db.add({ { "JN48", "144", "Q", "", "", "Germany" }, { "JN49", "144", "", "", "", "Germany" },
        { "JN58", "144", "Q", "", "", "Austria" }, { "JO60", "144", "", "", "", "Czech Republic" },
        { "JO60", "432", "Q", "", "", "Poland" }, { "JO61", "144", "Q", "", "", "" } }));
    LogMapFields f;
    EXPECT_EQ(DXNr(db.station, f, "144%", ""), LogCount::State::Done);
    EXPECT_EQ(f.dxw, "3");
    EXPECT_EQ(DXNQr(db.station, f, "144%", ""), LogCount::State::Done);
    EXPECT_EQ(f.dxc, "2");
    EXPECT_EQ(DXNr(db.station, f, "", ""), LogCount::State::Done); // all bands
    EXPECT_EQ(f.dxw, "4");
    EXPECT_EQ(db.polys(), QStringList(6, QString())); // entity counts store nothing
}

TEST(LogCount, NothingToCountOrTroubleLeavesTheLabel)
{
    LogDb db;
    ASSERT_TRUE(db.add({ { "JN48", "432" } }));
    LogMapFields f;
    f.sqw = "7";
    f.dxw = "5";
    EXPECT_EQ(SQNr(db.station, f, "144%", ""), LogCount::State::Empty);
    EXPECT_EQ(SQNr(db.station, f, "432%", "DL"), LogCount::State::Skipped);
    EXPECT_EQ(DXNr(db.station, f, "432%", ""), LogCount::State::Empty); // no DXCC on it
    EXPECT_EQ(f.sqw, "7");
    EXPECT_EQ(f.dxw, "5");

    db.station.dbConnection = db.dir.file("nowhere/backup.db");
    EXPECT_EQ(SQNr(db.station, f, "432%", ""), LogCount::State::Failed);
    EXPECT_EQ(f.sqw, "7");
    ASSERT_EQ(db.prompts.shown.size(), 1);
    EXPECT_TRUE(db.prompts.shown[0].startsWith("Error 3024 ("));
    EXPECT_TRUE(db.prompts.shown[0].endsWith(") in procedure SQNr of Formular form5"));
}

TEST(LogCount, LogWithoutIdColumnStoresOutlinesRecordByRecord)
{
    LogDb db;
    {
        DbConnection c(db.path());
        ASSERT_TRUE(c.exec("DROP TABLE logtab"));
        ASSERT_TRUE(c.exec("CREATE TABLE logtab (Grid TEXT, Band TEXT, QSL TEXT, DXCC TEXT, GEpoly TEXT)"));
        ASSERT_TRUE(
            c.exec("INSERT INTO logtab VALUES ('JN49', '144', '', '', ''), ('JN48', '144', '', '', '')"));
    }
    LogMapFields f;
    EXPECT_EQ(SQNr(db.station, f, "144%", ""), LogCount::State::Done);
    EXPECT_EQ(f.sqw, "2");
    DbConnection c(db.path());
    QSqlQuery q(c.database());
    ASSERT_TRUE(q.exec("SELECT GEpoly FROM logtab WHERE Grid = 'JN48'") && q.next());
    EXPECT_EQ(q.value(0).toString(), ring48);
}
