#include "mapexport/KmlWriter.h"
#include "core/Station.h"
#include "mapexport/KmlFile.h"
#include "mapexport/KmlTemplates.h"
#include "tests/mapexport/KmlCheck.h"
#include "tests/support/TempDir.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

struct Fixture {
    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
    Fixture()
    {
        station.settings.setText(Setting::MyCall, "N0CALL");
        station.homeCoords = "9.16666666666667,48.9166666666667";
        station.transparency = "128";
        station.documentName = "N0CALL 144 MHz wkd/cfd 2/1";
    }
};

LogKmlRow row(const QString& grid, const QString& qsl, const QString& prop, const QString& poly = {})
{
    return { grid, "Log: " + grid, "8.5," + grid.mid(2, 2) + ".5", poly, qsl, prop };
}

} // namespace

TEST(KmlFile, CommitReplacesAndCancelKeepsThePreviousFile)
{
    TempDir dir;
    dir.write("earth.kml", "old");
    {
        KmlFile f(Kml::outputPath());
        ASSERT_TRUE(f.open());
        f.write("new half");
        f.cancel();
    }
    EXPECT_EQ(dir.read("earth.kml"), "old");
    {
        KmlFile f(Kml::outputPath());
        ASSERT_TRUE(f.open());
        f.write(QByteArray(3 << 20, 'x')); // passes the block size several times
        f.write("end");
        EXPECT_EQ(f.bytesWritten(), (3 << 20) + 3);
        EXPECT_EQ(dir.read("earth.kml"), "old"); // nothing in place before the commit
        ASSERT_TRUE(f.commit());
    }
    const QByteArray now = dir.read("earth.kml");
    EXPECT_EQ(now.size(), (3 << 20) + 3);
    EXPECT_TRUE(now.endsWith("xend"));
    EXPECT_EQ(QFileInfo(dir.path()).dir().entryList({ "*.kml*" }, QDir::Files).size(), 0);
}

TEST(KmlFile, UnwritableFolderFailsCleanly)
{
    TempDir dir;
    KmlFile f(dir.file("missing/earth.kml"));
    EXPECT_FALSE(f.open());
    EXPECT_FALSE(f.errorString().isEmpty());
    f.write("x");
    EXPECT_FALSE(f.commit());
}

TEST(KmlWriter, LogSequenceColoursAndLineSwitch)
{
    Fixture f;
    KmlFile file(Kml::outputPath());
    ASSERT_TRUE(file.open());
    KmlWriter w(f.station, file);
    w.begin();
    w.logRecord(row("JN48", "Q", "Es", Kml::squareRing(8, 48, 10, 49)), true);
    w.logRecord(row("JN49", "D", "", {}), true); // red fill, colour carried over from Es
    w.logRecord(row("JO50", "N", "Ms"), false); // no line, but the colour moves on
    w.logRecord(row("JO51", "", "??"), true); // grey from the record before
    w.end();
    ASSERT_TRUE(file.commit());
    EXPECT_EQ(f.station.lineColour, "#ff707070");

    const QByteArray bytes = f.dir.read("earth.kml");
    EXPECT_TRUE(MatchesGolden("writer_log.kml", bytes));
    EXPECT_EQ(XmlLintErrors("earth.kml"), "");
    EXPECT_EQ(bytes.count("\r\n"), 3 + 4 + 1);
    EXPECT_TRUE(bytes.contains(
        "<color>#8000ffff</color></PolyStyle></Style> <MultiGeometry><Point><coordinates>8.5,48"));
    EXPECT_TRUE(bytes.contains(
        "<color>#800000ff</color></PolyStyle></Style> <MultiGeometry><Point><coordinates>8.5,49"));
    const KmlShape s = ReadKml(bytes);
    EXPECT_TRUE(s.ok);
    EXPECT_EQ(s.points, 1 + 4);
    EXPECT_EQ(s.polygons, 1);
    EXPECT_EQ(s.lines, 3);
}

TEST(KmlWriter, BeaconSequenceStaysOnOneLineAndLeavesItsColour)
{
    Fixture f;
    f.station.documentName = "N0CALL  BeaconsAFB";
    f.station.homeCoords.clear(); // the logbook has not run yet
    KmlFile file(Kml::outputPath());
    ASSERT_TRUE(file.open());
    KmlWriter w(f.station, file);
    w.begin();
    w.beaconRecord("XX0BCN", "Beacon:XX0BCN/B", "7.0,50.0", true);
    w.beaconRecord("XX0B", "Beacon:XX0BCN-B", "", false);
    w.end();
    ASSERT_TRUE(file.commit());
    EXPECT_EQ(f.station.lineColour, "#ff0000ff");
    const QByteArray bytes = f.dir.read("earth.kml");
    EXPECT_TRUE(MatchesGolden("writer_beacons.kml", bytes));
    EXPECT_EQ(XmlLintErrors("earth.kml"), "");
    EXPECT_EQ(bytes.count("\r\n"), 4);
    const KmlShape s = ReadKml(bytes);
    EXPECT_EQ(s.points, 1);
    EXPECT_EQ(s.emptyPolygons, 2);
    EXPECT_EQ(s.lines, 1);
}

TEST(KmlWriter, TransparencyIsReadOncePerExport)
{
    Fixture f;
    f.station.transparency = "10";
    KmlFile file(Kml::outputPath());
    ASSERT_TRUE(file.open());
    KmlWriter w(f.station, file);
    w.begin();
    f.station.transparency = "255"; // the slider moves during the export
    w.logRecord(row("JN48", "", "Tr"), false);
    w.end();
    ASSERT_TRUE(file.commit());
    EXPECT_TRUE(f.dir.read("earth.kml").contains("<color>#A00ffff</color>"));
}
