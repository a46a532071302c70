// kestrel-log edi as a script meets it: the real program, in a folder with Kestrel.txt and
// Kestrel.ini, on a real log; its file is the 2 m golden byte for byte.
#include "EdiGolden.h"
#include "core/Station.h"
#include "core/StationConfig.h"

#include <QFile>
#include <QProcess>

namespace {
struct ToolRun {
    int status = -1;
    QString out;
    QString err;
};

ToolRun kestrelLog(const QStringList& arguments)
{
    QProcess p;
    p.start(qEnvironmentVariable("KESTREL_BUILD_DIR") + QStringLiteral("/app/kestrel-log/kestrel-log"),
        arguments);
    if (!p.waitForFinished(60000)) {
        p.kill();
        p.waitForFinished();
    }
    return { p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
        QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError()) };
}

} // namespace

TEST(KestrelLogEdi, WritesTheBandFromTheStationFilesOfTheCurrentFolder)
{
    TestDb db; // its folder is the current one
    ASSERT_TRUE(db.created && db.add(ediContestLog()));
    // Without Kestrel.txt there is no own locator to score from.
    ToolRun r = kestrelLog({ "--db", db.path(), "edi", "--band", "2m", "2m.edi" });
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.err.startsWith("kestrel-log: No own locator")) << r.err.toStdString();

    RecordingPrompts prompts;
    Station station(prompts);
    for (int i = 0; i < Setting::SavedCount; ++i)
        station.settings[i] = StationConfig::newFileValue(i);
    station.settings.setText(Setting::MyCall, "DA0KES");
    station.settings.setText(Setting::MyLocator, "JN48OW");
    station.settings.setText(Setting::QslAddress, "OP: Erika Muster, Lindenweg 3, 12345 Kestrelbach");
    station.settings.setText(Setting::QslFoot, "email: op@example.org");
    ASSERT_TRUE(SaveStationConfig(station));
    db.dir.write("Kestrel.ini",
        "[log]\nclock=utc\n[contest]\nname=IARU Region 1 VHF Contest\ndates=\"20261107;20261108\"\n"
        "section=MULTI\nclub=Kestrelbach Radio Club\ncountry=Germany\noperators=DL1ABC, DL2XYZ\n"
        "equipment=IC-9700\npower=100\nantenna=2 x 9 el Yagi\nantennaHeight=\"12;520\"\n"
        "remarks=Portable on the Kestrelberg.\n");
    r = kestrelLog({ "--db", db.path(), "edi", "--band", "2m", "2m.edi" });
    EXPECT_EQ(r.status, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, "50 contacts (15661 points) written to 2m.edi.\n");
    // The contacts scored 0 or from a 4-character locator, named.
    EXPECT_EQ(r.err.count('\n'), 5) << r.err.toStdString();
    EXPECT_EQ(db.dir.read("2m.edi").toStdString(), ediGolden("contest-2m.edi").toStdString());

    r = kestrelLog({ "--db", db.path(), "edi", "23cm.edi", "--band", "1296%" });
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "kestrel-log: No contacts on 1,3 GHz: no file written.\n");
    EXPECT_FALSE(QFile::exists(db.dir.file("23cm.edi")));
    r = kestrelLog({ "--db", db.path(), "edi", "2m.edi" });
    EXPECT_EQ(r.status, 2);
}
