// The award square map: squares per band counted by hand, and the written file checked by xmllint.
#include "mapexport/SquareMap.h"
#include "LogDb.h"
#include "logbook/db/DbConnection.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace {
struct Qso {
    const char* band;
    const char* grid;
    const char* qsl;
    const char* extra;
};

// Squares on 2 m: JO62 (twice, by case), JO61, JN48, JO50 and JO60 (a rover on their line),
// JN39 JN49 JO30 JO40 (a rover on their corner, confirmed); JO62 confirmed by a lower-case q.
const Qso Log[] = {
    { "144", "JO62QM", "Y", "" },
    { "144", "jo62ab", "q", "" },
    { "144", "JO61", "", "" },
    { "144", "JN48OW12", "T", "" },
    { "144", "JO50", "Y", "<VUCC_GRIDS:9>JO50,jo60 <STATE:2>BY" },
    { "144", "", "Q", "<SAT_NAME:3>QO1 <vucc_grids:19>JN39,JN49,JO30,JO40" },
    { "144", "", "Q", "" }, // no locator
    { "144", "JZ99", "Q", "" }, // no such field
    { "144", "JO6", "Y", "" }, // too short
    { "144", "J062QM", "Y", "" }, // a zero for the O
    { "144", "JN49", "Q", "" },
    { "432", "JO62QM", "Y", "" },
    { "432", "JO62", "Q", "" },
    { "432", "IO91", "Y", "" },
    { "1296", "jn48", "", "" },
    { "14200", "FN31", "Q", "" },
};

} // namespace

TEST(SquareMap, CountsPerBandAsVuccAndAFileXmllintAccepts)
{
    LogDb db;
    {
        DbConnection c(db.path());
        for (const Qso& q : Log)
            ASSERT_TRUE(
                c.exec("INSERT INTO logtab (Band, Grid, QSL, AdifExtra, Callsign) VALUES (?, ?, ?, ?, 'X')",
                    { q.band, q.grid, q.qsl, q.extra }));
    }
    SquareTally tally;
    QString report;
    ASSERT_TRUE(
        SquareMap::write(db.path(), QString(), db.dir.file("squares.kml"), "DA0KES squares", &tally, &report))
        << report.toStdString();
    QMap<QString, std::pair<int, int>> counted;
    for (auto it = tally.bands().begin(); it != tally.bands().end(); ++it)
        counted[it.key()] = { tally.worked(it.key()), tally.confirmed(it.key()) };
    const QMap<QString, std::pair<int, int>> byHand
        = { { "2m", { 9, 5 } }, { "70cm", { 2, 1 } }, { "23cm", { 1, 0 } }, { "20m", { 1, 1 } } };
    EXPECT_EQ(counted, byHand);
    EXPECT_EQ(report,
        "20m: 1 squares, 1 confirmed\n23cm: 1 squares, 0 confirmed\n2m: 9 squares, 5 confirmed\n"
        "70cm: 2 squares, 1 confirmed");

    const QByteArray kml = db.dir.read("squares.kml");
    EXPECT_EQ(kml.count("<Placemark>"), 13);
    EXPECT_TRUE(kml.contains("<name>JO62</name>\n"
                             "                <description>2m confirmed</description>\n"
                             "                <styleUrl>#confirmed</styleUrl>"))
        << kml.toStdString();
    EXPECT_TRUE(kml.contains("<coordinates>12,52,0 14,52,0 14,53,0 12,53,0 12,52,0</coordinates>")); // JO62
    QProcess xmllint;
    xmllint.start("xmllint", { "--noout", db.dir.file("squares.kml") });
    ASSERT_TRUE(xmllint.waitForFinished(30000));
    EXPECT_EQ(xmllint.exitCode(), 0) << xmllint.readAllStandardError().toStdString();
}

TEST(SquareMap, OneBandOnlyAndAnEmptyLog)
{
    LogDb db;
    ASSERT_TRUE(db.add({ { "JO62QM", "144", "Q" }, { "JO62QM", "432", "Y" } }));
    SquareTally tally;
    QString report;
    ASSERT_TRUE(SquareMap::write(db.path(), "432%", db.dir.file("70cm.kml"), "70 cm", &tally, &report));
    EXPECT_EQ(report, "70cm: 1 squares, 0 confirmed");
    LogDb empty;
    SquareTally none;
    ASSERT_TRUE(
        SquareMap::write(empty.path(), QString(), empty.dir.file("none.kml"), "none", &none, &report));
    EXPECT_EQ(report, "No contact with a valid locator: the map is empty.");
    EXPECT_FALSE(
        SquareMap::write(empty.path(), QString(), empty.dir.file("no/such/dir.kml"), "x", &none, &report));
    EXPECT_TRUE(report.startsWith("The square map cannot be written: ")) << report.toStdString();
}
