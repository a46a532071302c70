#include "beacons/BeaconMapData.h"
#include "beacons/BeaconMapExport.h"
#include "geo/Locator.h"
#include "logbook/db/LogbookSchema.h"
#include "mapexport/MapViewer.h"
#include "tests/beacons/BeaconDb.h"
#include "tests/mapexport/KmlCheck.h"

#include <gtest/gtest.h>

namespace {

using Status = BeaconExportOutcome::Status;

// Both shortening rules, a plain name, a 4-character square, a bad locator, and a comment with
// & and < that the file must carry escaped.
struct MapFixture : BeaconFixture {
    RecordingMapViewer viewer;

    MapFixture()
    {
        EXPECT_TRUE(db.ok());
        EXPECT_TRUE(db.add({ { "XX0BCN-B", "JO40FF", "10368050", "slot, 10 W" },
            { "XX0BCN/B", "jn49rv", "144430", "" }, { "DL0UB", "JO62", "1296900", "QRP & <5W>" },
            { "DM9XX/B", "XY12", "432470", "bad locator" } }));
        station.homeCoords = "9.16666666666667,48.9166666666667";
    }
    BeaconExportOutcome export_(const QString& filter = {}) { return GeB_Click(station, filter, viewer); }
    QByteArray file() const { return dir.read("earth.kml"); }
};

} // namespace

TEST(BeaconMapTexts, DescriptionAndPosition)
{
    EXPECT_EQ(BeaconGeData("DB0ABC/B", "144430", "JO40FF", "5 W"),
        "Beacon:DB0ABC/B QRG: 144430 kHz  LOC:JO40FF Comment:5 W ");
    EXPECT_EQ(BeaconGeData("", "", "", ""), "Beacon: QRG:  kHz  LOC: Comment: ");
    EXPECT_EQ(BeaconGridXY("JO40FF"), CoordText(LocatorToDegrees("JO40FF")));
    EXPECT_EQ(BeaconGridXY("jo40ff"), BeaconGridXY("JO40FF"));
    EXPECT_EQ(BeaconGridXY("JO62"), CoordText(LocatorToDegrees("JO62HH")));
    EXPECT_EQ(BeaconGridXY("JN48OW"), "9.16666666666667,48.9166666666667");
    EXPECT_EQ(BeaconGridXY("XY12"), "");
    EXPECT_EQ(BeaconGridXY(""), "");
}

TEST(BeaconMapTexts, NameShorteningAndDocumentName)
{
    EXPECT_EQ(ShortBeaconName("XX0BCN-B"), "XX0B"); // four characters go
    EXPECT_EQ(ShortBeaconName("XX0BCN/B"), "XX0BCN");
    EXPECT_EQ(ShortBeaconName("DL0UB"), "DL0UB");
    EXPECT_EQ(ShortBeaconName("AB"), "AB");
    EXPECT_EQ(ShortBeaconName("/B"), "");
    EXPECT_EQ(ShortBeaconName("AB-C"), "");
    EXPECT_FALSE(ShortBeaconName("A").has_value());
    EXPECT_FALSE(ShortBeaconName("").has_value());
    EXPECT_FALSE(ShortBeaconName("A-B").has_value());
    EXPECT_EQ(BeaconDocumentName("N0CALL"), "N0CALL  BeaconsAFB");
}

TEST(BeaconGD, FillsEveryRecordAndCountsTheBadLocatorToo)
{
    MapFixture f;
    const GdOutcome out = GD(f.station, "");
    EXPECT_TRUE(out.ok);
    EXPECT_EQ(out.records, 4);
    EXPECT_EQ(f.prompts.shown, QStringList({ "4 Dataset from Tarnwick backup.mdB imported" }));
    EXPECT_EQ(f.db.column("GEgridXY"),
        QStringList({ BeaconGridXY("JO40FF"), BeaconGridXY("JN49RV"), BeaconGridXY("JO62HH"), "" }));
    EXPECT_EQ(f.db.column("GEdata")[1], "Beacon:XX0BCN/B QRG: 144430 kHz  LOC:jn49rv Comment: ");
    EXPECT_EQ(f.db.column("GEdata")[3], "Beacon:DM9XX/B QRG: 432470 kHz  LOC:XY12 Comment:bad locator ");
}

TEST(BeaconGD, NameFilterLeavesTheOthersAlone)
{
    MapFixture f;
    const GdOutcome out = GD(f.station, "%/b%");
    EXPECT_EQ(out.records, 2);
    EXPECT_EQ(out.message, "2 Dataset from Tarnwick backup.mdB imported");
    EXPECT_EQ(f.db.column("GEdata")[0], "<null>");
    EXPECT_EQ(f.db.column("GEdata")[2], "<null>");
    EXPECT_NE(f.db.column("GEdata")[1], "<null>");
}

TEST(BeaconGD, TableWithoutMapColumnsStoresNothing)
{
    MapFixture f;
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    ASSERT_TRUE(f.db.exec(LogbookSchema::oldBeacons()));
    ASSERT_TRUE(f.db.add({ { "DB0XX/B", "JO40FF", "144", "" } }));
    const GdOutcome out = GD(f.station, "");
    EXPECT_FALSE(out.ok);
    EXPECT_EQ(f.prompts.shown, QStringList({ "No new Recorset available" }));
}

TEST(BeaconGEB, GoldenWithLines)
{
    MapFixture f;
    GD(f.station, "");
    f.station.lineBeacons = true;
    const BeaconExportOutcome out = f.export_();
    ASSERT_EQ(out.status, Status::Written) << out.message.toStdString();
    EXPECT_EQ(out.records, 4);
    EXPECT_EQ(f.viewer.opened, QStringList({ "earth.kml" }));
    EXPECT_EQ(f.station.documentName, "N0CALL  BeaconsAFB");
    EXPECT_EQ(f.station.lineColour, "#ff0000ff"); // left for the next log export

    const QByteArray bytes = f.file();
    EXPECT_TRUE(MatchesGolden("beacons_lines_on.kml", bytes));
    EXPECT_EQ(XmlLintErrors(f.dir.file("earth.kml")), "");
    EXPECT_EQ(bytes.count("\r\n"), 4); // every beacon on the one line before the closing tags
    EXPECT_TRUE(bytes.contains("<Placemark><name>XX0B</name>"));
    EXPECT_TRUE(bytes.contains("<Placemark><name>XX0BCN</name>"));
    EXPECT_TRUE(bytes.contains("Comment:QRP &amp; &lt;5W&gt; </description>"));
    const KmlShape s = ReadKml(bytes);
    EXPECT_TRUE(s.ok);
    EXPECT_EQ(s.placemarks, 1 + 4 + 4);
    EXPECT_EQ(s.points, 1 + 3); // the bad locator has no position
    EXPECT_EQ(s.lines, 4);
    EXPECT_EQ(s.emptyPolygons, 4);
}

TEST(BeaconGEB, GoldenWithoutLinesAndTheBeaconsOnlyFilter)
{
    MapFixture f;
    GD(f.station, "");
    f.station.lineBeacons = false;
    f.station.transparency = "10";
    const BeaconExportOutcome out = f.export_("%/b%");
    ASSERT_EQ(out.status, Status::Written) << out.message.toStdString();
    EXPECT_EQ(out.records, 2); // XX0BCN-B and DL0UB carry no "/b"
    const QByteArray bytes = f.file();
    EXPECT_TRUE(MatchesGolden("beacons_lines_off.kml", bytes));
    EXPECT_EQ(XmlLintErrors(f.dir.file("earth.kml")), "");
    EXPECT_FALSE(bytes.contains("DL0UB"));
    EXPECT_FALSE(bytes.contains("<name>XX0B</name>"));
    EXPECT_TRUE(bytes.contains("<color>#A00ffff</color>"));
    EXPECT_EQ(ReadKml(bytes).lines, 0);
}

TEST(BeaconGEB, FilterMatchingNothingStillWritesTheHomePlacemark)
{
    MapFixture f;
    const BeaconExportOutcome out = f.export_("%nomatch%");
    ASSERT_EQ(out.status, Status::Written);
    EXPECT_EQ(out.records, 0);
    EXPECT_EQ(f.file(),
        "<kml xmlns=\"http://earth.google.com/kml/2.0\">\r\n<Document>\r\n<Placemark><name> "
        "N0CALL</name><Point>"
        "<coordinates>9.16666666666667,48.9166666666667</coordinates></Point></Placemark>\r\n"
        "</Document></kml>\r\n");
    EXPECT_EQ(XmlLintErrors(f.dir.file("earth.kml")), "");
    EXPECT_TRUE(f.prompts.shown.isEmpty());
}

TEST(BeaconGEB, EmptyTableWritesNothing)
{
    MapFixture f;
    ASSERT_TRUE(f.db.exec("DELETE FROM PNT_Beacon"));
    f.dir.write("earth.kml", "previous");
    const BeaconExportOutcome out = f.export_();
    EXPECT_EQ(out.status, Status::NoRecords);
    EXPECT_EQ(f.prompts.shown, QStringList({ "No lat/long coords where found." }));
    EXPECT_EQ(f.file(), "previous");
    EXPECT_TRUE(f.viewer.opened.isEmpty());
}

TEST(BeaconGEB, NameTooShortStopsWithTheReportAndKeepsTheOldFile)
{
    MapFixture f;
    ASSERT_TRUE(f.db.add({ { "A", "JO40FF", "144", "" }, { "DB0Z/B", "JO40FF", "144", "" } }));
    f.dir.write("earth.kml", "previous");
    f.station.lineColour = "#ffff0000";
    const BeaconExportOutcome out = f.export_();
    EXPECT_EQ(out.status, Status::Failed);
    EXPECT_EQ(f.prompts.shown,
        QStringList(
            { "Error 5 (Invalid procedure call or argument: beacon name \"A\") in procedure GeB_Click "
              "of Formular form1" }));
    EXPECT_EQ(f.file(), "previous");
    EXPECT_TRUE(f.viewer.opened.isEmpty());
    EXPECT_EQ(f.station.lineColour, "#ffff0000");

    // An empty name (the list stores one) and a short dash name stop it the same way.
    ASSERT_TRUE(f.db.exec("UPDATE PNT_Beacon SET beacon = '' WHERE beacon = 'A'"));
    EXPECT_EQ(f.export_().status, Status::Failed);
    ASSERT_TRUE(f.db.exec("UPDATE PNT_Beacon SET beacon = 'A-B' WHERE beacon = ''"));
    EXPECT_EQ(f.export_().status, Status::Failed);
    EXPECT_TRUE(f.prompts.shown.last().contains("beacon name \"A-B\""));
}

TEST(BeaconGEB, MissingTableIsReportedWithItsProcedure)
{
    MapFixture f;
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    EXPECT_EQ(f.export_().status, Status::Failed);
    ASSERT_EQ(f.prompts.shown.size(), 1);
    EXPECT_TRUE(f.prompts.shown[0].startsWith("Error "));
    EXPECT_TRUE(f.prompts.shown[0].endsWith(") in procedure GeB_Click of Formular form1"));
}
