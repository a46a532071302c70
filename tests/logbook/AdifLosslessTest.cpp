// ADIF without loss: every field of a record kept and written back, QSL letters from paper and
// electronic confirmations, bad fields kept as text, what award programs need in the export,
// and date and time converted between UTC and a log kept on local time.
#include "AdifJobs.h"
#include "logbook/adif/AdifMapping.h"

namespace {

const QByteArray FullRecord
    = "<CALL:6>IT9XXX <QSO_DATE:8>20260614 <TIME_ON:6>101530 <TIME_OFF:6>102010 <BAND:3>20m "
      "<FREQ:6>14.205 <MODE:3>SSB <SUBMODE:3>USB <RST_SENT:2>59 <RST_RCVD:2>57 <GRIDSQUARE:8>JM77EN12 "
      "<GRIDSQUARE_EXT:2>AB <NAME:5>Salvo <QTH:7>Catania <EMAIL:14>it9xxx@mail.it <STATE:2>CT "
      "<CNTY:7>Catania <IOTA:6>EU-025 <SOTA_REF:10>IT9/SI-001 <POTA_REF:7>IT-0123 <VUCC_GRIDS:10>JM77,JM78  "
      "<SAT_NAME:6>QO-100 <QSLMSG:11>Tnx fer QSO <QSL_SENT:1>N <QSL_RCVD:1>N <LOTW_QSL_RCVD:1>Y "
      "<EQSL_QSL_RCVD:1>Y <COUNTRY:6>Sicily <DXCC:3>248 <CQZ:2>15 <ITUZ:2>28 <CONT:2>EU "
      "<APP_OTHERLOG_RIG:7>IC-7300 <EOR>\n";

} // namespace

TEST(AdifLossless, EveryFieldSurvivesImportExportImport)
{
    EntryTestDb first;
    EXPECT_EQ(importText(first, FullRecord).toStdString(), "1 records imported from in.adi, 0 refused.");
    const QList<Row> rows = first.rows({ "Grid", "QSL", "DXCC", "DxccNr", "CQZone", "mode", "AdifExtra" });
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0]["Grid"].toString(), "JM77EN12AB");
    EXPECT_EQ(rows[0]["QSL"].toString(), "Q") << "confirmed through LoTW and eQSL";
    EXPECT_EQ(rows[0]["DXCC"].toString(), "Italy");
    EXPECT_EQ(rows[0]["DxccNr"].toInt(), 248);
    EXPECT_EQ(rows[0]["CQZone"].toInt(), 15);
    EXPECT_EQ(rows[0]["mode"].toString(), "USB");
    EXPECT_EQ(rows[0]["AdifExtra"].toString().toStdString(),
        "<APP_OTHERLOG_RIG:7>IC-7300 <CNTY:7>Catania <COUNTRY:6>Sicily <EMAIL:14>it9xxx@mail.it "
        "<EQSL_QSL_RCVD:1>Y <IOTA:6>EU-025 <LOTW_QSL_RCVD:1>Y <POTA_REF:7>IT-0123 <QSLMSG:11>Tnx fer QSO "
        "<QSL_RCVD:1>N <QSL_SENT:1>N <QTH:7>Catania <SAT_NAME:6>QO-100 <SOTA_REF:10>IT9/SI-001 <STATE:2>CT "
        "<TIME_OFF:6>102010 <VUCC_GRIDS:10>JM77,JM78 ");

    const QByteArray exported = exportText(first);
    EXPECT_EQ(exported.toStdString(),
        "<CALL:6>IT9XXX <QSO_DATE:8>20260614 <TIME_ON:6>101530 <BAND:3>20m <FREQ:6>14.205 <MODE:3>SSB "
        "<SUBMODE:3>USB <RST_SENT:2>59 <RST_RCVD:2>57 <GRIDSQUARE:8>JM77EN12 <GRIDSQUARE_EXT:2>AB "
        "<NAME:5>Salvo <QSL_SENT:1>N <QSL_RCVD:1>N <COUNTRY:5>Italy <DXCC:3>248 <DISTANCE:8>1330.102 "
        "<CONT:2>EU <CQZ:2>15 <ITUZ:2>28 <APP_OTHERLOG_RIG:7>IC-7300 <CNTY:7>Catania "
        "<APP_KESTREL_COUNTRY:6>Sicily <EMAIL:14>it9xxx@mail.it <EQSL_QSL_RCVD:1>Y <IOTA:6>EU-025 "
        "<LOTW_QSL_RCVD:1>Y <POTA_REF:7>IT-0123 <QSLMSG:11>Tnx fer QSO <QTH:7>Catania <SAT_NAME:6>QO-100 "
        "<SOTA_REF:10>IT9/SI-001 <STATE:2>CT <TIME_OFF:6>102010 <VUCC_GRIDS:10>JM77,JM78  <EOR>\n");

    EntryTestDb second;
    EXPECT_EQ(importText(second, exported).toStdString(), "1 records imported from in.adi, 0 refused.");
    EXPECT_EQ(rowLines(second), rowLines(first));
    EXPECT_EQ(exportText(second), exported);
}

TEST(AdifLossless, QslLettersFromPaperAndElectronicConfirmations)
{
    struct Case {
        const char *sent, *rcvd, *lotw, *eqsl, *letter;
    };
    for (const Case& c : std::initializer_list<Case> { { "Y", "Y", "", "", "Q" }, { "N", "Y", "", "", "T" },
             { "Q", "Y", "", "", "T" }, { "", "V", "", "", "T" }, { "N", "N", "Y", "", "Q" },
             { "", "", "", "Y", "Q" }, { "R", "N", "V", "", "Q" }, { "Y", "Y", "N", "N", "Q" },
             { "R", "N", "N", "", "S" }, { "Q", "N", "", "", "Y" }, { "Y", "N", "", "", "N" },
             { "", "", "", "", "" } })
        EXPECT_EQ(AdifMapping::qslLetter(c.sent, c.rcvd, c.lotw, c.eqsl), c.letter)
            << c.sent << c.rcvd << c.lotw << c.eqsl;
}

TEST(AdifLossless, BadFieldsAreKeptAsTextAndOnlyCallOrDateRefuse)
{
    EntryTestDb db;
    // "Jürgen" has 6 characters and 7 bytes: a length counted in characters.
    const QByteArray file
        = "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <GRIDSQUARE:2>JO <EOR>\n"
          "<CALL:6>DL2ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <GRIDSQUARE:4>JO62 "
          "<DISTANCE:4>12,5 <EOR>\n"
          "<CALL:6>DL3ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <NAME:6>J\xc3\xbcrgen <EOR>\n"
          "<CALL:6>DL4ABC <QSO_DATE:8>20261115 <EOR>\n"
          "<CALL:6>DL5ABC <TIME_ON:4>1820 <BAND:2>2m <EOR>\n"
          "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <MODE:2>CW <EOR>\n"
          "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <EOR>\n";
    EXPECT_EQ(importText(db, file).toStdString(),
        "5 records imported from in.adi, 2 refused, 3 fields kept as text:\n"
        "line 5 (DL5ABC): no QSO_DATE\n"
        "line 7 (DL1ABC): the contact is already in the log\n"
        "line 1 (DL1ABC): GRIDSQUARE \"JO\" is not a locator, kept as text\n"
        "line 2 (DL2ABC): DISTANCE \"12,5\" is not a number of km, kept as text\n"
        "line 3 (DL3ABC): the length of NAME counts characters, not bytes");
    const QList<Row> rows = db.rows({ "Callsign", "Grid", "Nam", "GMT", "mode", "AdifExtra" });
    ASSERT_EQ(rows.size(), 5);
    EXPECT_EQ(rows[0]["AdifExtra"].toString(), "<GRIDSQUARE:2>JO");
    EXPECT_EQ(rows[1]["Grid"].toString(), "JO62");
    EXPECT_EQ(rows[1]["AdifExtra"].toString(), "<DISTANCE:4>12,5");
    EXPECT_EQ(rows[2]["Nam"].toString(), QString::fromUtf8("Jürgen"));
    EXPECT_EQ(rows[3]["GMT"].toString(), "") << "no time is no reason to lose the contact";
    EXPECT_EQ(rows[4]["mode"].toString(), "CW") << "the same minute in another mode is another contact";
    // Written back as they came.
    const QByteArray text = exportText(db);
    EXPECT_TRUE(text.contains("<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <FREQ:3>144 "
                              "<COUNTRY:20>Fed. Rep. of Germany <DXCC:3>230 <CONT:2>EU <CQZ:2>14 <ITUZ:2>28 "
                              "<GRIDSQUARE:2>JO <EOR>"))
        << text.toStdString();
    // Beside the distance of the locator, the record's own goes under the program's name.
    EXPECT_TRUE(text.contains("<APP_KESTREL_DISTANCE:4>12,5 <EOR>")) << text.toStdString();
    EXPECT_TRUE(text.contains("<NAME:7>J\xc3\xbcrgen")) << text.toStdString();
}

TEST(AdifLossless, ExportGivesAwardProgramsWhatTheyNeed)
{
    EntryTestDb db;
    ASSERT_TRUE(db.add({ contact("DL1ABC", "JO62QM12AB", "1014", { { "QRB", 512.5 }, { "GMT", "18:20" } }),
        contact("G4ABC", QVariant(), "10140", { { "QRB", 321.0 }, { "GMT", "18:21" } }),
        contact("KC4AAA", QVariant(), "14200", { { "GMT", "18:22" }, { "Date", "" } }),
        contact("EA8ABC", QVariant(), "144", { { "GMT", "18:23" }, { "Date", QVariant() } }) }));
    QString report;
    const QByteArray thirty = exportText(db, "10140", &report);
    EXPECT_EQ(report.toStdString(), "2 records written to out.adi.");
    EXPECT_EQ(thirty.toStdString(),
        "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:3>30m <FREQ:6>10.140 "
        "<GRIDSQUARE:8>JO62QM12 <GRIDSQUARE_EXT:2>AB <COUNTRY:20>Fed. Rep. of Germany <DXCC:3>230 "
        "<DISTANCE:5>512.5 <CONT:2>EU <CQZ:2>14 <ITUZ:2>28 <APP_KESTREL_BAND:4>1014 <EOR>\n"
        "<CALL:5>G4ABC <QSO_DATE:8>20261115 <TIME_ON:4>1821 <BAND:3>30m <FREQ:6>10.140 <COUNTRY:7>England "
        "<DXCC:3>223 <CONT:2>EU <CQZ:2>14 <ITUZ:2>27 <EOR>\n");
    exportText(db, QString(), &report);
    EXPECT_EQ(report.toStdString(),
        "4 records written to out.adi.\n2 records have no date: EA8ABC 144, KC4AAA 14200");
}

TEST(AdifLocalClock, TimesRoundTripOnBothSidesOfTheChanges)
{
    const BerlinTime tz;
    struct Case {
        const char *date, *time, *storedDate, *storedTime;
    };
    // 29 March 2026 02:00 CET becomes 03:00 CEST; 25 October 03:00 CEST becomes 02:00 CET.
    const QList<Case> cases = { { "20260329", "0059", "2026-03-29", "01:59" },
        { "20260329", "0100", "2026-03-29", "03:00" }, { "20260328", "233000", "2026-03-29", "00:30:00" },
        { "20261024", "2330", "2026-10-25", "01:30" }, { "20261025", "0030", "2026-10-25", "02:30" },
        { "20261025", "0200", "2026-10-25", "03:00" }, { "20261231", "2300", "2027-01-01", "00:00" } };
    QByteArray file;
    for (const Case& c : cases)
        file += "<CALL:6>DL1ABC <QSO_DATE:8>" + QByteArray(c.date)
            + " <TIME_ON:" + QByteArray::number(qstrlen(c.time)) + ">" + c.time + " <BAND:2>2m <EOR>\n";
    EntryTestDb first;
    importText(first, file, LogClock::Base::Local);
    const QList<Row> rows = first.rows({ "Date", "GMT" });
    ASSERT_EQ(rows.size(), cases.size());
    for (int i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(rows[i]["Date"].toString(), cases[i].storedDate) << cases[i].time;
        EXPECT_EQ(rows[i]["GMT"].toString(), cases[i].storedTime) << cases[i].time;
    }
    const QByteArray exported = exportText(first, QString(), nullptr, LogClock::Base::Local);
    for (const Case& c : cases)
        EXPECT_TRUE(exported.contains("<QSO_DATE:8>" + QByteArray(c.date)
            + " <TIME_ON:" + QByteArray::number(qstrlen(c.time)) + ">" + c.time))
            << c.date << " " << c.time;
    EntryTestDb second;
    importText(second, exported, LogClock::Base::Local);
    EXPECT_EQ(rowLines(second), rowLines(first));
    // A time typed into the hour the change skipped, and the hour it repeats.
    for (const auto& [day, utc] : { std::pair { QDate(2026, 3, 29), "2026-03-29T01:30:00Z" },
             std::pair { QDate(2026, 10, 25), "2026-10-25T00:30:00Z" } })
        EXPECT_EQ(
            LogClock::toUtc(day, QTime(2, 30), LogClock::Base::Local).toString(Qt::ISODate).toStdString(),
            utc);
    // Kept on UTC, the log holds the file's times.
    EntryTestDb utc;
    importText(utc, file, LogClock::Base::Utc);
    EXPECT_EQ(utc.rows({ "GMT" })[1]["GMT"].toString(), "01:00");
}
