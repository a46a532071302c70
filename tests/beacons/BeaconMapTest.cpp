// GD and GE on a real database; the goldens fix every byte of "earth.kml", descriptions and
// coordinates included.
#include "beacons/BeaconMapData.h"
#include "beacons/BeaconMapExport.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/SeedData.h"
#include "mapexport/MapViewer.h"
#include "tests/beacons/BeaconDb.h"
#include "tests/mapexport/KmlCheck.h"

#include <QRegularExpression>
#include <QDir>
#include <QFileInfo>
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

TEST(BeaconMapTexts, DescriptionNameShorteningAndDocumentName)
{
    EXPECT_EQ(BeaconGeData("", "", "", ""), "Beacon: QRG:  kHz  LOC: Comment: ");
    // "-" takes four characters off, "/" two; nothing when fewer than two would be left to cut.
    const std::pair<const char*, const char*> names[] = { { "XX0BCN-B", "XX0B" }, { "XX0BCN/B", "XX0BCN" },
        { "AB", "AB" }, { "/B", "" }, { "AB-C", "" }, { "A", nullptr }, { "", nullptr }, { "A-B", nullptr } };
    for (const auto& [name, shortened] : names) {
        const std::optional<QString> got = ShortBeaconName(name);
        ASSERT_EQ(got.has_value(), shortened != nullptr) << name;
        if (got)
            EXPECT_EQ(*got, shortened) << name;
    }
}

TEST(BeaconGD, FillsTheFilteredRecordsThenAllAndCountsTheBadLocatorToo)
{
    MapFixture f;
    const GdOutcome beacons = GD(f.station, "%/b%");
    EXPECT_EQ(beacons.records, 2);
    EXPECT_EQ(beacons.message, "2 Dataset from Tarnwick backup.mdB imported");
    EXPECT_EQ(f.db.column("GEdata"),
        QStringList({ "<null>", "Beacon:XX0BCN/B QRG: 144430 kHz  LOC:jn49rv Comment: ", "<null>",
            "Beacon:DM9XX/B QRG: 432470 kHz  LOC:XY12 Comment:bad locator " }));
    EXPECT_EQ(f.db.column("GEgridXY")[3], ""); // the bad locator has no position
    EXPECT_EQ(GD(f.station, "").records, 4);

    // A table without the map columns stores nothing.
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    ASSERT_TRUE(f.db.exec(LogbookSchema::oldBeacons()));
    ASSERT_TRUE(f.db.add({ { "DB0XX/B", "JO40FF", "144", "" } }));
    f.prompts.shown.clear();
    EXPECT_FALSE(GD(f.station, "").ok);
    EXPECT_EQ(f.prompts.shown, QStringList({ "No new Recorset available" }));
}

TEST(BeaconGEB, GoldensWithAndWithoutLines)
{
    MapFixture f;
    GD(f.station, "");
    f.station.lineBeacons = true;
    BeaconExportOutcome out = f.export_();
    ASSERT_EQ(out.status, Status::Written) << out.message.toStdString();
    EXPECT_EQ(out.records, 4);
    EXPECT_TRUE(MatchesGolden("beacons_lines_on.kml", f.file()));
    EXPECT_EQ(XmlLintErrors(f.dir.file("earth.kml")), "");
    EXPECT_EQ(f.viewer.opened, QStringList({ "earth.kml" }));
    EXPECT_EQ(f.station.documentName, "N0CALL  BeaconsAFB");
    EXPECT_EQ(f.station.lineColour, "#ff0000ff"); // left for the next log export

    f.station.lineBeacons = false;
    f.station.transparency = "10";
    out = f.export_("%/b%");
    EXPECT_EQ(out.records, 2); // XX0BCN-B and DL0UB carry no "/b"
    EXPECT_TRUE(MatchesGolden("beacons_lines_off.kml", f.file()));
    EXPECT_EQ(XmlLintErrors(f.dir.file("earth.kml")), "");

    // A filter matching nothing still writes the home placemark.
    f.prompts.shown.clear();
    out = f.export_("%nomatch%");
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

TEST(BeaconGEB, ShortNamesAndTableTroubleAreReportedAndKeepTheOldFile)
{
    MapFixture f;
    ASSERT_TRUE(f.db.add({ { "A", "JO40FF", "144", "" }, { "DB0Z/B", "JO40FF", "144", "" } }));
    f.dir.write("earth.kml", "previous");
    f.station.lineColour = "#ffff0000";
    EXPECT_EQ(f.export_().status, Status::Failed);
    EXPECT_EQ(f.prompts.shown,
        QStringList(
            { "Error 5 (Invalid procedure call or argument: beacon name \"A\") in procedure GeB_Click "
              "of Formular form1" }));
    EXPECT_EQ(f.station.lineColour, "#ffff0000");

    f.prompts.shown.clear();
    ASSERT_TRUE(f.db.exec("DELETE FROM PNT_Beacon"));
    EXPECT_EQ(f.export_().status, Status::NoRecords);
    EXPECT_EQ(f.prompts.shown, QStringList({ "No lat/long coords where found." }));
    ASSERT_TRUE(f.db.exec("DROP TABLE PNT_Beacon"));
    EXPECT_EQ(f.export_().status, Status::Failed);
    const QString error = f.prompts.shown.last();
    EXPECT_TRUE(error.startsWith("Error ") && error.endsWith(") in procedure GeB_Click of Formular form1"));
    EXPECT_EQ(f.file(), "previous");
    EXPECT_TRUE(f.viewer.opened.isEmpty());
}

TEST(BeaconGEB, NewDatabaseMapsEveryStarterBeaconWithoutGD)
{
    BeaconFixture f;
    const QString path = f.dir.file("new.db");
    ASSERT_TRUE(DatabaseFile::create(path));
    f.station.dbConnection = path;
    f.station.homeCoords = "9.16666666666667,48.9166666666667";
    RecordingMapViewer viewer;
    const BeaconExportOutcome out = GeB_Click(f.station, {}, viewer);
    ASSERT_EQ(out.status, Status::Written) << out.message.toStdString();
    const int starters = int(SeedData::beacons().size());
    EXPECT_EQ(out.records, starters);
    // Every placemark but home carries a point and its description.
    const QString kml = QString::fromUtf8(f.dir.read("earth.kml"));
    const QRegularExpression point(QStringLiteral(
        "<description>Beacon:[^<]+</description>.*?<coordinates>-?[0-9.]+,-?[0-9.]+</coordinates>"));
    EXPECT_EQ(kml.count(point), starters);
    EXPECT_EQ(kml.count(QStringLiteral("<coordinates></coordinates>")), 0);
}

TEST(BeaconGEB, SaysWhereTheMapIsWhenNoViewerStartsAndNamesTheFileWhenItCannotBeWritten)
{
    MapFixture f;
    const QString folder = QDir::toNativeSeparators(QFileInfo(f.dir.path()).absoluteFilePath());
    f.viewer.opens = false;
    ASSERT_EQ(f.export_().status, Status::Written);
    EXPECT_EQ(f.prompts.shown,
        QStringList { "The map was written to earth.kml in " + folder
            + ", but no program to show it could be started. Open it in Google Earth or another globe "
              "viewer, or register one for .kml files." });

    // a folder where the file should go
    f.prompts.shown.clear();
    ASSERT_TRUE(QFile::remove(f.dir.file("earth.kml")) && QDir(f.dir.path()).mkdir("earth.kml"));
    EXPECT_EQ(f.export_().status, Status::Failed);
    ASSERT_EQ(f.prompts.shown.size(), 1);
    EXPECT_TRUE(
        f.prompts.shown[0].startsWith("Error 75 (Path/File access error: earth.kml in " + folder + ": "))
        << f.prompts.shown[0].toStdString();
    EXPECT_TRUE(f.prompts.shown[0].endsWith(") in procedure GeB_Click of Formular form1"));
}

TEST(BeaconGEB, WithoutAHomeTheMapHasNoHomePointAndNoLines)
{
    MapFixture f;
    GD(f.station, "");
    f.station.lineBeacons = true;
    f.station.homeCoords.clear(); // what an invalid own locator leaves
    ASSERT_EQ(f.export_().status, Status::Written);
    const QByteArray kml = f.file();
    EXPECT_EQ(kml.count("<Placemark>"), 4) << kml.toStdString();
    EXPECT_FALSE(kml.contains("<name> N0CALL</name>"));
    EXPECT_FALSE(kml.contains("LineString"));
    EXPECT_EQ(XmlLintErrors(f.dir.file("earth.kml")), "");
}
