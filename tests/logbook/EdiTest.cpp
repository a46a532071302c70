#include "EdiGolden.h"
#include "EdiReader.h"
#include "core/SettingsTable.h"
#include "logbook/edi/EdiExport.h"
#include "logbook/edi/EdiLocator.h"
#include "logbook/edi/EdiLog.h"

#include <QFile>

namespace {
EdiContest goldenContest()
{
    EdiContest c;
    c.name = "IARU Region 1 VHF Contest";
    c.dates = "20261107;20261108";
    c.call = "DA0KES";
    c.locator = "JN48OW";
    c.section = "MULTI";
    c.club = "Kestrelbach Radio Club";
    c.takeQslLines(
        "OP: Erika Muster, Lindenweg 3, 12345 Kestrelbach", "email: op@example.org  www.example.org");
    c.country = "Germany";
    c.operators = "DL1ABC, DL2XYZ";
    c.transmitter = c.receiver = "IC-9700";
    c.power = "100";
    c.antenna = "2 x 9 el Yagi";
    c.antennaHeight = "12;520";
    c.remarks = "Portable on the Kestrelberg.";
    return c;
}

struct EdiDb : TestDb {
    EdiDb() { EXPECT_TRUE(created && add(ediContestLog())); }

    EdiExport::Result write(
        const QString& pattern, const QString& name, const EdiContest& c = goldenContest())
    {
        EdiExport e(path(), pattern, LogClock::Base::Utc);
        const EdiExport::Result r = e.write(c, dir.file(name));
        report = e.report();
        problems = e.problems();
        return r;
    }

    QString report;
    QStringList problems;
};
} // namespace

TEST(EdiExport, TwoMetreAndSeventyCentimetreLogsGiveTheGoldenFiles)
{
    EdiDb db;
    const struct {
        const char* pattern;
        const char* file;
        const char* report;
    } cases[] = {
        { "144%", "contest-2m.edi", "50 contacts (15661 points) written to contest-2m.edi." },
        { "432%", "contest-70cm.edi", "3 contacts (816 points) written to contest-70cm.edi." },
    };
    for (const auto& c : cases) {
        ASSERT_EQ(db.write(c.pattern, c.file), EdiExport::Result::Written) << db.report.toStdString();
        EXPECT_EQ(db.report, QString(c.report));
        const QByteArray written = db.dir.read(c.file);
        EXPECT_EQ(written.toStdString(), ediGolden(c.file).toStdString());
        EdiFileRead::parse(written).expectConsistent();
    }
    // The 2 m log: the contacts scored 0 are named, the 4-character locator too.
    db.write("144%", "contest-2m.edi");
    EXPECT_EQ(db.problems,
        QStringList({
            "2026-11-07 14:40 DB0XYZ: 4-character locator JN48, scored from the square's centre.",
            "2026-11-07 15:03 DL2ABC: no locator, scored 0.",
            "2026-11-07 15:20 DK0NA: 4-character locator JO40, scored from the square's centre.",
            "2026-11-07 15:36 DL9GS: locator \"JN4\" is not valid, scored 0.",
            "2026-11-08 10:05 DL1GEO: locator \"ZZ99AA\" is not valid, scored 0.",
        }));
}

TEST(EdiExport, EmptyAndNonEdiBandsWriteNoFile)
{
    EdiDb db;
    EXPECT_EQ(db.write("1296%", "23cm.edi"), EdiExport::Result::Empty);
    EXPECT_EQ(db.report, QString("No contacts on 1,3 GHz: no file written."));
    EXPECT_EQ(db.write("14200%", "20m.edi"), EdiExport::Result::Failed);
    EXPECT_EQ(
        db.report, QString("EDI files are for the bands from 50 MHz up; \"14200%\" is not one of them."));
    EXPECT_FALSE(QFile::exists(db.dir.file("23cm.edi")));
    EXPECT_FALSE(QFile::exists(db.dir.file("20m.edi")));
}

TEST(EdiExport, ContestSectionOfKestrelIniWithBonusesAndMultipliers)
{
    EdiDb db;
    db.dir.write("Kestrel.ini",
        "[contest]\nname=Nordic Activity, 2 m\ndates=20261107;20261108\nsection=SO\n"
        "operators=DL1ABC, DL2XYZ\nequipment=IC-9700\npower=100\nantenna=9 el\nsquareBonus=500\n"
        "dxccBonus=0\nmultipliers=squares\n");
    SettingsTable s;
    s.setText(Setting::MyCall, "da0kes");
    s.setText(Setting::MyLocator, "JN48OW");
    const EdiContest c = EdiContest::fromSettings(s);
    EXPECT_EQ(c.name, QString("Nordic Activity, 2 m"));
    EXPECT_EQ(c.operators, QString("DL1ABC, DL2XYZ"));
    EXPECT_EQ(c.receiver, QString("IC-9700"));
    EXPECT_EQ(c.call, QString("DA0KES"));
    ASSERT_EQ(db.write("144%", "nac.edi", c), EdiExport::Result::Written);
    const EdiFileRead f = EdiFileRead::parse(db.dir.read("nac.edi"));
    f.expectConsistent();
    EXPECT_EQ(f.header["TName"], QString("Nordic Activity, 2 m"));
    EXPECT_EQ(f.header["CWWLs"], QString("32;500;1"));
    EXPECT_EQ(f.header["CWWLB"], QString("16000"));
    EXPECT_EQ(f.header["CToSc"], QString::number((15661 + 16000) * 32));
}

TEST(EdiLog, FieldsTheLogCannotQuoteAndOwnLocatorFaults)
{
    EdiContest c = goldenContest();
    c.locator = "JN48O";
    EdiQso q;
    q.utc = QDateTime(QDate(2026, 11, 7), QTime(23, 59), Qt::UTC);
    q.call = "dl1abc/p";
    q.mode = "MSK144";
    q.nrSent = "12A";
    q.exchange = "B;05\n";
    q.locator = "jo62qm";
    const EdiLog log(c, "144 MHz", { q });
    EXPECT_EQ(log.problems(), QStringList("The own locator \"JN48O\" is not valid: no contact scores."));
    const EdiFileRead f = EdiFileRead::parse(log.text("9.9"));
    f.expectConsistent();
    ASSERT_EQ(f.records.size(), 1);
    EXPECT_EQ(f.records[0].call, QString("DL1ABC/P"));
    EXPECT_EQ(f.records[0].mode, QString("0"));
    EXPECT_EQ(f.records[0].nrSent, QString("12A"));
    EXPECT_EQ(f.records[0].exchange, QString("B,05"));
    EXPECT_EQ(f.records[0].points, 0);
    EXPECT_EQ(f.header["CODXC"], QString());
    EXPECT_EQ(f.end, QString("[END;Kestrel 9.9]"));
}

TEST(EdiLog, BandNamesModeCodesAndLocators)
{
    const struct {
        const char* text;
        const char* name;
    } bands[] = { { "50%", "50 MHz" }, { "70", "70 MHz" }, { "144%", "144 MHz" }, { "144300", "" },
        { "432%", "432 MHz" }, { "1296%", "1,3 GHz" }, { "2320%", "2,3 GHz" }, { "34%", "3,4 GHz" },
        { "5760%", "5,7 GHz" }, { "10368%", "10 GHz" }, { "24048%", "24 GHz" }, { "47088%", "47 GHz" },
        { "76032%", "76 GHz" }, { "122250%", "122 GHz" }, { "7050%", "" }, { "28400%", "" }, { "", "" } };
    for (const auto& b : bands)
        EXPECT_EQ(EdiLog::bandName(b.text), QString(b.name)) << b.text;
    const struct {
        const char* mode;
        int code;
    } modes[] = { { "SSB", 1 }, { "usb", 1 }, { "CW", 2 }, { "AM", 5 }, { "FM", 6 }, { "RTTY", 7 },
        { "SSTV", 8 }, { "ATV", 9 }, { "FT8", 0 }, { "", 0 } };
    for (const auto& m : modes)
        EXPECT_EQ(EdiLog::modeCode(m.mode), m.code) << m.mode;
    const struct {
        const char* locator;
        bool valid;
    } locators[] = { { "JN48", true }, { "jn48ow", true }, { "JN48OW12", true }, { "JN48OW12AB", true },
        { "JN4", false }, { "JN48O", false }, { "SN48", false }, { "JN48YA", false }, { "JN48OWA1", false },
        { "", false } };
    for (const auto& l : locators)
        EXPECT_EQ(EdiLocator::isValid(l.locator), l.valid) << l.locator;
    EXPECT_EQ(EdiLocator::points(0.0), 1);
    EXPECT_EQ(EdiLocator::points(754.99), 754);
}
