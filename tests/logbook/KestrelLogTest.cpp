// kestrel-log as scripts meet it: the real program on real files, its exit status, what it
// writes to standard output and standard error, and files that are not Kestrel's left alone.
#include "DbTestSupport.h"
#include "EdiGolden.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "logbook/browse/DxccLookup.h"
#include "logbook/db/SchemaMigration.h"

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

const QByteArray TwoContacts
    = "Test log\n<EOH>\n"
      "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1804 <BAND:2>2m <MODE:3>SSB <EOR>\n"
      "<CALL:5>G4XYZ <QSO_DATE:8>20261116 <TIME_ON:4>0930 <BAND:4>70cm <MODE:2>CW <EOR>\n";

class KestrelLog : public ::testing::Test {
protected:
    TestDb db;
    QString adif(const QString& name) const { return db.dir.file(name); }
};

TEST_F(KestrelLog, ACommandLineItCannotUnderstandGivesUsageAndStatusTwo)
{
    const QString usage
        = QStringLiteral("usage: kestrel-log [--db FILE] import FILE.adi\n"
                         "       kestrel-log [--db FILE] export FILE.adi [--band PATTERN]\n"
                         "       kestrel-log [--db FILE] dxcc CALL...\n"
                         "       kestrel-log [--db FILE] check\n"
                         "       kestrel-log [--db FILE] edi --band PATTERN FILE.edi\n"
                         "FILE is the logbook database; without --db, the one Kestrel uses.\n");
    const struct {
        QStringList args;
        const char* message;
    } cases[] = {
        { {}, "no command given" },
        { { "--db" }, "--db needs a file" },
        { { "--db", db.path() }, "no command given" },
        { { "--db", db.path(), "frobnicate" }, "unknown command: frobnicate" },
        { { "--db", db.path(), "import" }, "import takes one ADIF file" },
        { { "--db", db.path(), "import", "a.adi", "b.adi" }, "import takes one ADIF file" },
        { { "--db", db.path(), "export", "a.adi", "--band" },
            "export takes one ADIF file and an optional --band PATTERN" },
        { { "--db", db.path(), "dxcc" }, "dxcc takes one or more callsigns" },
        { { "--db", db.path(), "check", "now" }, "check takes no arguments" },
    };
    for (const auto& c : cases) {
        const ToolRun r = kestrelLog(c.args);
        EXPECT_EQ(r.status, 2) << c.message;
        EXPECT_EQ(r.out, "") << c.message;
        EXPECT_EQ(r.err, QStringLiteral("kestrel-log: %1\n").arg(QLatin1String(c.message)) + usage);
    }
    const ToolRun help = kestrelLog({ "--help" });
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out, usage);
    EXPECT_EQ(help.err, "");
}

TEST_F(KestrelLog, ImportsAndExportsAdifOfAllBandsOrOne)
{
    db.dir.write("in.adi", TwoContacts);
    const ToolRun in = kestrelLog({ "--db", db.path(), "import", adif("in.adi") });
    EXPECT_EQ(in.status, 0) << in.err.toStdString();
    EXPECT_TRUE(in.out.startsWith("2 records imported")) << in.out.toStdString();
    EXPECT_EQ(db.rows({ "Callsign", "Date", "Band", "mode" }),
        (QList<Row> {
            { { "Callsign", "DL1ABC" }, { "Date", "2026-11-15" }, { "Band", "144" }, { "mode", "SSB" } },
            { { "Callsign", "G4XYZ" }, { "Date", "2026-11-16" }, { "Band", "432" }, { "mode", "CW" } } }));

    const ToolRun all = kestrelLog({ "--db", db.path(), "export", adif("all.adi") });
    EXPECT_EQ(all.status, 0) << all.err.toStdString();
    EXPECT_EQ(all.out, "2 records written to all.adi.\n");
    const ToolRun band = kestrelLog({ "--db", db.path(), "export", adif("2m.adi"), "--band", "144%" });
    EXPECT_EQ(band.status, 0) << band.err.toStdString();
    EXPECT_EQ(band.out, "1 records written to 2m.adi.\n");
    EXPECT_TRUE(db.dir.read("2m.adi").contains("<CALL:6>DL1ABC"));
    EXPECT_FALSE(db.dir.read("2m.adi").contains("G4XYZ"));

    // The same file again: every record is a duplicate, refused and named.
    const ToolRun again = kestrelLog({ "--db", db.path(), "import", adif("all.adi") });
    EXPECT_EQ(again.status, 0);
    EXPECT_TRUE(again.out.contains("DL1ABC") && again.out.contains("G4XYZ")) << again.out.toStdString();
    EXPECT_EQ(db.rows({ "Callsign" }).size(), 2);

    const ToolRun missing = kestrelLog({ "--db", db.path(), "import", adif("none.adi") });
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.startsWith("kestrel-log: ")) << missing.err.toStdString();
}

TEST_F(KestrelLog, DxccGivesOneLineACallAsTheLookupDoes)
{
    const QStringList calls = { "DL1ABC", "g4xyz", "JA1XYZ", "F/DL1ABC", "IT9XXX" };
    const ToolRun r = kestrelLog(QStringList { "--db", db.path(), "dxcc" } + calls);
    EXPECT_EQ(r.status, 0) << r.err.toStdString();
    EXPECT_EQ(r.err, "");
    const QStringList lines = r.out.split('\n');
    ASSERT_EQ(lines.size(), calls.size() + 1) << r.out.toStdString();
    for (int i = 0; i < calls.size(); ++i) {
        const QStringList fields = lines[i].split('\t');
        ASSERT_EQ(fields.size(), 6) << lines[i].toStdString();
        EXPECT_EQ(fields[0], calls[i].toUpper());
        const DxccLookupResult expected = DxccLookup::lookup(db.path(), calls[i].toUpper());
        ASSERT_TRUE(expected.found);
        EXPECT_EQ(fields.mid(1),
            (QStringList { expected.entity.name, QString::number(expected.entity.dxccNr),
                QString::number(expected.entity.cqZone), QString::number(expected.entity.ituZone),
                expected.entity.continent }));
    }
    const ToolRun none = kestrelLog({ "--db", db.path(), "dxcc", "Q1ABC" });
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.out, "Q1ABC\t\t\t\t\t\n");
    EXPECT_EQ(none.err, "kestrel-log: no DXCC entity for Q1ABC\n");
}

TEST_F(KestrelLog, CheckGivesIntegrityAndSchemaVersion)
{
    const ToolRun r = kestrelLog({ "--db", db.path(), "check" });
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, db.path() + ": schema version 2, integrity ok\n");
    EXPECT_EQ(r.err, "");

    ASSERT_TRUE(execAll(db.path(), { "PRAGMA user_version = 1" }));
    EXPECT_EQ(kestrelLog({ "--db", db.path(), "check" }).out,
        db.path() + ": schema version 1 (brought to 2 when next opened), integrity ok\n");

    const ToolRun missing = kestrelLog({ "--db", db.dir.file("none.db"), "check" });
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "kestrel-log: The database file does not exist: " + db.dir.file("none.db") + "\n");
    EXPECT_FALSE(QFile::exists(db.dir.file("none.db")));
}

TEST_F(KestrelLog, EveryCommandRefusesAFileThatIsNotAKestrelLog)
{
    const QString foreign = db.dir.file("other.sqlite");
    ASSERT_TRUE(
        execAll(foreign, { "CREATE TABLE notes (text TEXT)", "INSERT INTO notes VALUES ('keep')" }, true));
    db.dir.write("in.adi", TwoContacts);
    const QByteArray before = db.dir.read("other.sqlite");
    for (const QStringList& command :
        { QStringList { "import", adif("in.adi") }, QStringList { "export", adif("x.adi") },
            QStringList { "dxcc", "DL1ABC" }, QStringList { "check" } }) {
        const ToolRun r = kestrelLog(QStringList { "--db", foreign } + command);
        EXPECT_EQ(r.status, 1) << command[0].toStdString();
        EXPECT_EQ(r.out, "") << command[0].toStdString();
        EXPECT_EQ(r.err,
            "kestrel-log: The file is not a Kestrel logbook: " + foreign
                + " (it has no table logtab). It was left as it is.\n");
    }
    EXPECT_EQ(db.dir.read("other.sqlite"), before);
    EXPECT_FALSE(QFile::exists(foreign + "-wal"));
    EXPECT_FALSE(QFile::exists(adif("x.adi")));
}

} // namespace

// edi: the station from Kestrel.txt and Kestrel.ini of the current folder; the 2 m golden.
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
