#include "mapexport/LogMapExport.h"
#include "logbook/db/DbConnection.h"
#include "mapexport/LogCount.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/MapViewer.h"
#include "tests/mapexport/KmlCheck.h"
#include "tests/mapexport/LogDb.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

using Status = MapExportOutcome::Status;

// A band with every case the map draws: both fills, every propagation colour, an unknown code
// first and last, two contacts in one square, a Null description and a comment with & and <.
struct Fixture {
    LogDb db;
    LogMapFields fields;
    RecordingMapViewer viewer;
    LogMapExport exporter { db.station, fields, viewer };
    QString band = "144%";

    Fixture()
    {
        EXPECT_TRUE(db.add({ { "JO62EE", "144", "N", "Ms" }, { "IO91WM", "144", "Y", "", "QRP & <5W> 73" },
            { "JN48BB", "144", "D", "Tr" }, { "JN48AA", "144", "Q", "Rs" }, { "JN49CC", "144", "q", "Es" },
            { "JO50DD", "144", "D", "Au" }, { "JO70FF", "144", "Q", "F2" }, { "JN47", "432", "Q", "Tr" },
            { "", "144", "Q", "Tr" } }));
        DbConnection c(db.path());
        EXPECT_TRUE(c.exec("UPDATE logtab SET GEdata = NULL WHERE Grid = 'JO62EE'"));
    }
    MapExportOutcome run(const QString& search = {}) { return exporter.GoogleEarth(band, search); }
    QByteArray file() const { return db.dir.read("earth.kml"); }
};

} // namespace

TEST(LogMapExport, GoldensWithAndWithoutLinesAndTheColourCarriedOver)
{
    Fixture f;
    f.db.station.transparency = "10";
    f.db.station.lineStations = true;
    ASSERT_EQ(SQNr(f.db.station, f.fields, f.band, ""), LogCount::State::Done); // as after the last save
    const MapExportOutcome out = f.run();
    ASSERT_EQ(out.status, Status::Written) << out.message.toStdString();
    EXPECT_EQ(out.records, 7);
    EXPECT_TRUE(f.db.prompts.shown.isEmpty());
    EXPECT_EQ(f.viewer.opened, QStringList { "earth.kml" });
    EXPECT_EQ(f.db.station.documentName, "N0CALL 144 MHz wkd/cfd 6/3");
    EXPECT_EQ(f.fields.sqw, "6");
    EXPECT_EQ(f.fields.sqc, "3");

    const QByteArray bytes = f.file();
    EXPECT_TRUE(MatchesGolden("log_lines_on.kml", bytes));
    EXPECT_EQ(XmlLintErrors(f.db.dir.file("earth.kml")), "");
    EXPECT_EQ(f.db.station.lineColour, "#ff707070"); // Ms, carried over the unknown F2
    // The unknown code on the first record after start gives KML's default colour, never an
    // empty colour element.
    EXPECT_TRUE(
        bytes.contains("<name>IO91WM</name><description>Log: DL2XY 144 kHz  15.11.2026 18:20 rsts:59 "
                       "rstr:57 QRB:512km  QTF:87 QSL: Y Prop: QRP &amp; &lt;5W&gt; 73</description>"));
    EXPECT_TRUE(bytes.contains(
        "</coordinates> </LineString><Style><LineStyle><color>#ffffffff</color><width>2</width>"));

    const KmlShape s = ReadKml(bytes);
    EXPECT_TRUE(s.ok);
    EXPECT_EQ(s.points, 1 + 7);
    EXPECT_EQ(s.polygons, 6); // the first record of each square
    EXPECT_EQ(s.emptyPolygons, 1); // the second JN48
    EXPECT_EQ(s.lines, 7);

    // Without lines the colour moves on all the same, from what a beacon export left behind.
    f.db.station.transparency = "128";
    f.db.station.lineStations = false;
    f.db.station.lineColour = "#ff0000ff";
    ASSERT_EQ(f.run().status, Status::Written);
    EXPECT_TRUE(MatchesGolden("log_lines_off.kml", f.file()));
    EXPECT_EQ(XmlLintErrors(f.db.dir.file("earth.kml")), "");
    EXPECT_EQ(f.file().count("\r\n"), 3 + 7 + 1);
    EXPECT_EQ(ReadKml(f.file()).lines, 0);
    EXPECT_EQ(f.db.station.lineColour, "#ff707070");

    // With lines, the colour of an earlier export starts them.
    f.db.station.lineStations = true;
    f.db.station.lineColour = "#ff0000ff";
    ASSERT_EQ(f.run().status, Status::Written);
    EXPECT_TRUE(f.file().contains(" -0.166666666666667,51.5</coordinates> </LineString><Style><LineStyle>"
                                  "<color>#ff0000ff</color>"));
}

TEST(LogMapExport, OutlinesStoredByThisRunReachTheNextExport)
{
    Fixture f;
    ASSERT_EQ(f.run().status, Status::Written);
    const KmlShape first = ReadKml(f.file());
    EXPECT_EQ(first.polygons, 0);
    EXPECT_EQ(first.emptyPolygons, 7);
    ASSERT_EQ(f.run().status, Status::Written); // overwrites the same file
    EXPECT_EQ(ReadKml(f.file()).polygons, 6);
}

TEST(LogMapExport, BandTextInTheDocumentName)
{
    Fixture f;
    f.db.add({ { "JN58", "10140", "Q" }, { "JN59", "3400", "Q" } });
    f.band = "10140";
    ASSERT_EQ(f.run().status, Status::Written);
    EXPECT_EQ(f.db.station.documentName, "N0CALL 1014 MHz wkd/cfd 1/1");

    f.band = "34%";
    ASSERT_EQ(f.run().status, Status::Written);
    EXPECT_EQ(f.band, "34000"); // deliberate: later band queries look for 34000...
    EXPECT_EQ(f.db.station.documentName, "N0CALL 3400 MHz wkd/cfd 1/1");
    EXPECT_EQ(f.run().status, Status::NoRecords); // ...and find nothing on 3400
}

TEST(LogMapExport, NothingToShowBadInputOrAnUnwritableTargetIsReported)
{
    Fixture f;
    f.db.dir.write("earth.kml", "previous");
    f.fields.sqw = "9";
    EXPECT_EQ(f.run("DL").status, Status::Failed);
    EXPECT_EQ(f.fields.sqw, "9"); // the counts did not run either
    f.band.clear();
    EXPECT_EQ(f.run().status, Status::Failed);
    EXPECT_EQ(f.fields.sqw, "7"); // the counts ran over every band before the name failed
    f.band = "50%";
    EXPECT_EQ(f.run().status, Status::NoRecords);
    EXPECT_EQ(f.db.prompts.shown,
        QStringList(
            { "Error 3704 (Operation is not allowed when the object is closed: clear the search box to show "
              "the log on the map) in procedure GoogleEarth_Click of Formular form5",
                "Error 5 (Invalid procedure call or argument: choose a band to show the log on the map) in "
                "procedure "
                "GoogleEarth_Click of Formular form5",
                "No lat/long coords where found." }));
    EXPECT_EQ(f.file(), "previous");

    // A folder where the file should go.
    ASSERT_TRUE(QFile::remove(f.db.dir.file("earth.kml")) && QDir(f.db.dir.path()).mkdir("earth.kml"));
    f.band = "144%";
    EXPECT_EQ(f.run().status, Status::Failed);
    EXPECT_TRUE(f.db.prompts.shown.last().startsWith("Error 75 (Path/File access error: earth.kml in "
        + QDir::toNativeSeparators(QFileInfo(f.db.dir.path()).absoluteFilePath()) + ": "))
        << f.db.prompts.shown.last().toStdString();
    EXPECT_TRUE(f.viewer.opened.isEmpty());

    // written, but nothing could show it: the operator is told where it is
    ASSERT_TRUE(QDir(f.db.dir.path()).rmdir("earth.kml"));
    f.viewer.opens = false;
    EXPECT_EQ(f.run().status, Status::Written);
    EXPECT_TRUE(f.db.prompts.shown.last().startsWith("The map was written to earth.kml in "));
}

TEST(LogMapExport, RunsInSlicesOnTheEventLoopAndCancelKeepsThePreviousFileAndColour)
{
    Fixture f;
    QSignalSpy progress(&f.exporter, &LogMapExport::progress);
    QSignalSpy finished(&f.exporter, &LogMapExport::finished);
    ASSERT_TRUE(f.exporter.start(f.band, ""));
    EXPECT_FALSE(f.exporter.start(f.band, "")); // one at a time
    EXPECT_EQ(f.exporter.GoogleEarth(f.band, "").status, Status::Failed);
    ASSERT_TRUE(finished.wait(10000));
    EXPECT_FALSE(f.exporter.isRunning());
    EXPECT_EQ(finished.takeFirst().first().value<MapExportOutcome>().status, Status::Written);
    EXPECT_GE(progress.size(), 4);
    EXPECT_EQ(f.viewer.opened, QStringList { "earth.kml" });
    EXPECT_EQ(XmlLintErrors(f.db.dir.file("earth.kml")), "");

    f.db.station.lineStations = true;
    f.db.station.lineColour = "#before";
    f.db.dir.write("earth.kml", "previous");
    f.db.prompts.shown.clear();
    QObject::connect(&f.exporter, &LogMapExport::progress, &f.exporter, [&f](const QString& stage) {
        if (stage == "Writing earth.kml")
            f.exporter.cancel();
    });
    ASSERT_TRUE(f.exporter.start(f.band, ""));
    ASSERT_TRUE(finished.wait(10000));
    EXPECT_EQ(finished.first().first().value<MapExportOutcome>().status, Status::Cancelled);
    EXPECT_EQ(f.file(), "previous");
    EXPECT_EQ(QDir(f.db.dir.path()).entryList({ "earth*" }, QDir::Files), QStringList { "earth.kml" });
    EXPECT_EQ(f.db.station.lineColour, "#before");
    EXPECT_TRUE(f.db.prompts.shown.isEmpty());
    EXPECT_EQ(f.viewer.opened.size(), 1);
}
