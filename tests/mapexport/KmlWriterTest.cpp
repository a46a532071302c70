// The writer's sequences are fixed byte for byte by the log and beacon goldens; here the file's
// atomic replacement and what the writer reads once per export.
#include "mapexport/KmlWriter.h"
#include "core/Station.h"
#include "mapexport/KmlFile.h"
#include "mapexport/KmlTemplates.h"
#include "tests/support/TempDir.h"

#include <QDir>
#include <gtest/gtest.h>

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
        EXPECT_EQ(dir.read("earth.kml"), "old"); // nothing in place before the commit
        ASSERT_TRUE(f.commit());
    }
    const QByteArray now = dir.read("earth.kml");
    EXPECT_EQ(now.size(), (3 << 20) + 3);
    EXPECT_TRUE(now.endsWith("xend"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList { "earth.kml" });
}

TEST(KmlWriter, TransparencyIsReadOncePerExport)
{
    TempDir dir;
    RecordingPrompts prompts;
    Station station { prompts };
    station.transparency = "10";
    KmlFile file(Kml::outputPath());
    ASSERT_TRUE(file.open());
    KmlWriter w(station, file);
    w.begin();
    station.transparency = "255"; // the slider moves during the export
    w.logRecord({ "JN48", "Log: JN48", "8.5,48.5", {}, "", "Tr" }, false);
    w.end();
    ASSERT_TRUE(file.commit());
    EXPECT_TRUE(dir.read("earth.kml").contains("<color>#0A00ffff</color>"));
}
