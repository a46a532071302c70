// kestrel-log as scripts meet it: the real program on real files, its exit status, what it
// writes to standard output and standard error, and files that are not Kestrel's left alone.
#include "DbTestSupport.h"
#include "EdiGolden.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "logbook/adif/AdifImport.h"
#include "logbook/browse/DxccLookup.h"
#include "logbook/db/LogCopy.h"
#include "logbook/db/SchemaMigration.h"
#include "tests/support/PgServer.h"

#include <QFile>
#include <QProcess>

#include <limits>

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
                         "       kestrel-log copy --from LOG --to LOG\n"
                         "FILE is the logbook database; without --db, the one Kestrel uses.\n"
                         "LOG is a database file or a club server's postgresql://USER@HOST:PORT/DATABASE.\n");
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
        { { "copy" }, "copy takes --from LOG and --to LOG" },
        { { "copy", "--from", "a.db" }, "copy takes --from LOG and --to LOG" },
        { { "copy", "--from", "a.db", "--from", "b.db" }, "copy takes --from LOG and --to LOG" },
        { { "copy", "a.db", "--from", "--to", "b.db" }, "copy takes --from LOG and --to LOG" },
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

// copy: a log to a server of the test's own and back.
class KestrelLogCopy : public KestrelLog {
protected:
    static void SetUpTestSuite()
    {
        server = new PgServer;
        QString error;
        started = server->start(&error);
        if (!started)
            qWarning("%s", qPrintable(error));
        qunsetenv("PGPASSWORD");
        qputenv("PGPASSFILE", server->passFile().toLocal8Bit());
    }
    static void TearDownTestSuite() { delete server; }
    void SetUp() override { ASSERT_TRUE(started && db.created); }

    // A new empty database on the server.
    static QString serverLog(const QString& name) { return server->createDatabase(name); }

    // Every value of the three tables as SQLite gives it: "table ID column quote(value) typeof".
    static QStringList dump(const QString& file)
    {
        DbConnection c(file);
        QStringList out;
        for (const char* table : { "logtab", "PNT_Beacon", "dxccdata" }) {
            QStringList columns;
            QSqlQuery q(c.database());
            q.exec(QStringLiteral("PRAGMA table_info(%1)").arg(table));
            while (q.next())
                columns << q.value(1).toString();
            for (const QString& column : columns) {
                q.exec(QStringLiteral("SELECT ID, quote(%1), typeof(%1) FROM %2 ORDER BY ID")
                           .arg(column, table));
                while (q.next())
                    out << QStringLiteral("%1 %2 %3 %4 %5")
                               .arg(table, q.value(0).toString(), column, q.value(1).toString(),
                                   q.value(2).toString());
            }
        }
        return out;
    }

    static qint64 count(const QString& log, const char* table)
    {
        DbConnection c(log);
        QSqlQuery q(c.database());
        return q.exec(QStringLiteral("SELECT count(*) FROM %1").arg(table)) && q.next()
            ? q.value(0).toLongLong()
            : -1;
    }

    static inline PgServer* server = nullptr;
    static inline bool started = false;
};

// What a log of years holds: NULL beside '', numbers of every kind, long texts with tabs, line
// breaks and backslashes, calls and names beyond ASCII, ADIF fields without a column, IDs with
// gaps; and the values SQLite keeps in a number column that a server cannot.
const QStringList AwkwardLog = {
    "INSERT INTO logtab (ID, Date, GMT, Callsign, Grid, Band, Nam, QSL, QRB, QTF, Comment, Remarks, "
    "CQZone, ITUZone, DxccNr, AdifExtra, GEdata) VALUES (1, '2026-11-15', '18:04', 'DL1ABC', 'JO62QM', "
    "'144', "
    "'Jürgen 日本 😀', '', 1234.5678901234567, 0.1, '', NULL, 14, 28, 230, "
    "'<STATE:2>NY <CNTY:9>NY,Albany', 'Log: DL1ABC')",
    "INSERT INTO logtab (ID, Callsign, Nam, QRB, QTF, Comment, Remarks, CQZone) VALUES (7, 'SP9ŁÓŻ/P', "
    "'Zażółć', 500, 1e300, replace(hex(zeroblob(50000)), '00', 'a' || char(9) || 'b\\N' || char(10, 13)), "
    "'NULL', NULL)",
    "INSERT INTO logtab (ID, Callsign, QRB, QTF, CQZone, ITUZone, AdifExtra) VALUES (9, "
    "'G4XYZ', '12,5', "
    "'north', '', 3.5, '<STATE:2>NY')",
    "INSERT INTO logtab (ID, Callsign, QRB, AdifExtra) VALUES (10, 'F5ABC', 'far', '<DISTANCE:3>far')",
    "INSERT INTO logtab (ID, Callsign, DxccNr) VALUES (1000000, 'JA1XYZ', 339)",
    "INSERT INTO PNT_Beacon (ID, beacon, Locator, qrg, Equipment, GEpoly) VALUES (500, 'OK0EA/B', 'JO60LJ', "
    "'144476', 'Ø 10 W — Λ', '')",
    "DELETE FROM dxccdata WHERE ID = 3",
    "INSERT INTO dxccdata (ID, dxcccode, Country, Prefix, DxccNr) VALUES (99999, 'Q%', 'Testland', 'Q', 999)",
};

TEST_F(KestrelLogCopy, ALogGoesToTheServerAndBackWithEveryValueAsItWas)
{
    ASSERT_TRUE(execAll(db.path(), AwkwardLog));
    const QStringList source = dump(db.path());
    const QByteArray sourceBytes = db.dir.read("backup.db");
    const qint64 dxcc = count(db.path(), "dxccdata");
    const QString club = serverLog("club");
    ASSERT_FALSE(club.isEmpty());

    const ToolRun there = kestrelLog({ "copy", "--from", db.path(), "--to", club });
    EXPECT_EQ(there.status, 0) << there.err.toStdString();
    EXPECT_EQ(there.err, "");
    EXPECT_EQ(there.out,
        QStringLiteral(
            "logtab: 5 rows copied; 5 values no number column on the server can hold, kept in "
            "AdifExtra: ID 9 QRB \"12,5\" as DISTANCE, ID 9 QTF \"north\" as APP_KESTREL_QTF, ID 9 "
            "CQZone \"\" as NULL, ID 9 ITUZone \"3.5\" as ITUZ, ID 10 QRB \"far\" as APP_KESTREL_QRB\n"
            "PNT_Beacon: 25 rows copied\n"
            "dxccdata: %1 rows copied\n")
            .arg(dxcc));
    // The lookup takes the first match in stored order: the same entity on the server.
    EXPECT_EQ(
        DxccLookup::lookup(club, "DL1ABC").entity.name, DxccLookup::lookup(db.path(), "DL1ABC").entity.name);
    EXPECT_EQ(DxccLookup::lookup(club, "Q1AB").entity.name, "Testland");

    const QString back = db.dir.file("back.db");
    const ToolRun home = kestrelLog({ "copy", "--to", back, "--from", club });
    EXPECT_EQ(home.status, 0) << home.err.toStdString();
    EXPECT_EQ(home.out,
        QStringLiteral("logtab: 5 rows copied\nPNT_Beacon: 25 rows copied\ndxccdata: %1 rows copied\n")
            .arg(dxcc));
    EXPECT_EQ(db.dir.read("backup.db"), sourceBytes);

    // The same log, but for the values the server's number columns could not hold.
    ASSERT_TRUE(QFile::copy(db.path(), db.dir.file("expected.db")));
    ASSERT_TRUE(execAll(db.dir.file("expected.db"),
        { "UPDATE logtab SET QRB = NULL, QTF = NULL, CQZone = NULL, ITUZone = NULL, AdifExtra = '<STATE:2>NY "
          "<DISTANCE:4>12,5 <APP_KESTREL_QTF:5>north <ITUZ:3>3.5' WHERE ID = 9",
            "UPDATE logtab SET QRB = NULL, AdifExtra = '<DISTANCE:3>far <APP_KESTREL_QRB:3>far' WHERE ID = "
            "10" }));
    const QStringList expected = dump(db.dir.file("expected.db"));
    const QStringList copied = dump(back);
    ASSERT_EQ(copied.size(), source.size());
    for (qsizetype i = 0; i < copied.size(); ++i)
        EXPECT_EQ(copied[i].toStdString(), expected[i].toStdString());
    EXPECT_NE(source, expected); // the case above is one the dump sees

    // A contact saved on the server afterwards takes the next ID.
    DbConnection c(club);
    ASSERT_TRUE(c.exec("INSERT INTO logtab (Callsign) VALUES ('NEXT')"));
    ASSERT_TRUE(c.exec("INSERT INTO dxccdata (dxcccode) VALUES ('X%')"));
    QSqlQuery q(c.database());
    ASSERT_TRUE(q.exec("SELECT max(ID) FROM logtab UNION ALL SELECT max(ID) FROM dxccdata"));
    EXPECT_TRUE(q.next() && q.value(0).toLongLong() == 1000001);
    EXPECT_TRUE(q.next() && q.value(0).toLongLong() == 100000);
}

TEST_F(KestrelLogCopy, NeverMergesIntoALogWithContactsNorTouchesOneNotKestrels)
{
    ASSERT_TRUE(db.add({ contact("DL1ABC", "JO62QM", "144") }));
    TestDb target;
    ASSERT_TRUE(target.add({ contact("G4XYZ", "IO91", "432") }));
    const QByteArray targetBytes = target.dir.read("backup.db");
    const QString foreign = db.dir.file("other.sqlite");
    ASSERT_TRUE(execAll(foreign, { "CREATE TABLE notes (text TEXT)" }, true));
    const QByteArray foreignBytes = db.dir.read("other.sqlite");
    TestDb old;
    ASSERT_TRUE(execAll(old.path(), { "PRAGMA user_version = 1" }));
    const QString club = serverLog("club");
    ASSERT_EQ(kestrelLog({ "copy", "--from", db.path(), "--to", club }).status, 0);
    const QString notKestrel = "The file is not a Kestrel logbook: " + foreign
        + " (it has no table logtab). It was left as it is.";

    const struct {
        QString from;
        QString to;
        QString message;
    } cases[] = {
        { db.path(), target.path(),
            "The target log " + target.path()
                + " already holds 1 contacts; a log is copied only into a new or empty one, never merged. "
                  "Nothing was changed." },
        { target.path(), club,
            QStringLiteral(
                "The target log 127.0.0.1:%1/club already holds 1 contacts; a log is copied only into a "
                "new or empty one, never merged. Nothing was changed.")
                .arg(server->port()) },
        { db.path(), foreign, notKestrel },
        { foreign, db.dir.file("new.db"), notKestrel },
        { db.dir.file("none.db"), db.dir.file("new.db"),
            "The database file does not exist: " + db.dir.file("none.db") },
        { db.path(), db.path(), "The source and the target are the same log." },
        { old.path(), db.dir.file("new.db"),
            "The log " + old.path()
                + " has schema version 1, this program copies version 2. Open it with this version of "
                  "Kestrel once (it is brought up to date), then copy it." },
    };
    for (const auto& c : cases) {
        const ToolRun r = kestrelLog({ "copy", "--from", c.from, "--to", c.to });
        EXPECT_EQ(r.status, 1) << c.message.toStdString();
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err.toStdString(), ("kestrel-log: " + c.message + "\n").toStdString());
    }
    EXPECT_EQ(target.dir.read("backup.db"), targetBytes);
    EXPECT_EQ(db.dir.read("other.sqlite"), foreignBytes);
    EXPECT_FALSE(QFile::exists(db.dir.file("new.db")));
    EXPECT_EQ(TestDb().rows({ "Callsign" }).size(), 0);
    EXPECT_EQ(count(club, "logtab"), 1);
}

// What a server cannot hold at all stops the copy with the row named; nothing of it stays there.
TEST_F(KestrelLogCopy, AValueTheServerCannotHoldStopsTheCopyWithTheRowNamed)
{
    const struct {
        const char* change;
        const char* message;
    } cases[] = {
        { "UPDATE logtab SET Comment = x'00ff' WHERE Callsign = 'DL1ABC'",
            "logtab, ID 1, column Comment holds binary data, which the server cannot hold." },
        { "UPDATE dxccdata SET CQZone = 'x' WHERE ID = 5",
            "dxccdata, ID 5, column CQZone holds \"x\", which is no number the server can hold." },
    };
    int n = 0;
    for (const auto& c : cases) {
        TestDb log;
        ASSERT_TRUE(log.add({ contact("DL1ABC", "JO62QM", "144") }) && execAll(log.path(), { c.change }));
        const QString club = serverLog(QStringLiteral("club%1").arg(++n));
        const ToolRun r = kestrelLog({ "copy", "--from", log.path(), "--to", club });
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(r.err.toStdString(),
            QStringLiteral("kestrel-log: %1 Nothing was copied.\n").arg(c.message).toStdString());
        EXPECT_EQ(count(club, "logtab"), 0);
    }
}

// The import stores its records on a server through COPY: what it stores there, copied back
// into a file, is what the same import stores in a file.
TEST_F(KestrelLogCopy, AnAdifImportOnTheServerStoresWhatItStoresInAFile)
{
    auto field = [](const char* name, const QString& value) {
        const QByteArray v = value.toUtf8();
        return '<' + QByteArray(name) + ':' + QByteArray::number(v.size()) + '>' + v + ' ';
    };
    QByteArray adif = "generated\n<EOH>\n";
    for (int i = 0; i < 300; ++i)
        adif += field("CALL", QStringLiteral("DL%1AB").arg(i)) + field("QSO_DATE", "20261115")
            + field("TIME_ON", QStringLiteral("18%1").arg(i % 60, 2, 10, QLatin1Char('0')))
            + field("BAND", "2m") + field("MODE", "SSB") + field("GRIDSQUARE", "JO62QM")
            + field("NAME", "Jürgen 日本") + field("COMMENT", "a\tb\\N c\\") + field("CQZ", "14")
            + field("DISTANCE", i % 2 ? "12,5" : "512.5") + field("STATE", "NY") + "<RST_SENT:0> <EOR>\n";
    const QString club = serverLog("club");
    ASSERT_FALSE(DatabaseFile::prepare(club));
    for (const QString& log : { db.path(), club }) {
        AdifImport import(log, {});
        for (AdifImport::State s = import.startData(adif, "in.adi"); s == AdifImport::State::Running;)
            s = import.step(std::numeric_limits<qint64>::max());
        EXPECT_EQ(import.state(), AdifImport::State::Done) << import.error().text().toStdString();
        EXPECT_EQ(import.imported(), 300);
    }
    const QString back = db.dir.file("back.db");
    const LogCopy::Result r = LogCopy::run(club, back);
    ASSERT_FALSE(r.error) << r.error.text().toStdString();
    EXPECT_EQ(r.report().value(0).toStdString(), "logtab: 300 rows copied");
    EXPECT_EQ(dump(back), dump(db.path()));
}

TEST_F(KestrelLogCopy, AServerThatCannotBeReachedFailsWithTheMessage)
{
    const QString club = serverLog("club");
    ASSERT_TRUE(server->stop());
    const QString name = QStringLiteral("127.0.0.1:%1/club").arg(server->port());
    for (const QStringList& args : { QStringList { "--from", db.path(), "--to", club },
             QStringList { "--from", club, "--to", "new.db" } }) {
        const ToolRun r = kestrelLog(QStringList { "copy" } + args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_TRUE(r.err.startsWith(
            "kestrel-log: The logbook server " + name + " cannot be reached; nothing was changed there ("))
            << r.err.toStdString();
    }
    EXPECT_FALSE(QFile::exists(db.dir.file("new.db")));
    ASSERT_TRUE(server->start());
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
