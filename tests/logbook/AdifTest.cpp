// ADIF: reading records, the field mapping both ways, and import and
// export against real database files, with a round trip of 1 000 generated contacts.
#include "AdifJobs.h"
#include "logbook/adif/AdifBands.h"
#include "logbook/adif/AdifMapping.h"
#include "logbook/adif/AdifReader.h"
#include "logbook/browse/DxccIndex.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/entry/ContactSave.h"

#include <QRandomGenerator>

namespace {

QList<AdifRecord> readAll(const QByteArray& data, QHash<QString, QString>* header = nullptr)
{
    AdifReader reader(data);
    QList<AdifRecord> out;
    AdifRecord r;
    while (reader.next(r))
        out << r;
    if (header)
        *header = reader.header();
    return out;
}

} // namespace

TEST(AdifRead, HeaderFieldsTypesCaseAndBytes)
{
    QHash<QString, QString> header;
    const QByteArray file = "Exported by a logger <adif_ver:5>3.1.4\n<PROGRAMID:4>Test <eoh>\n"
                            "<call:6>DL1ABC <QSO_DATE:8:D>20261115 <Comment:6>Gr\xc3\xbc\xc3\x9f <EOR>\n"
                            "<EOR>\n<CALL:5>G4ABC <NAME:5>J\xfcrgn<eor>";
    const QList<AdifRecord> records = readAll(file, &header);
    EXPECT_EQ(header.value("ADIF_VER"), "3.1.4");
    EXPECT_EQ(header.value("PROGRAMID"), "Test");
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[0].line, 3);
    EXPECT_EQ(records[0].value("CALL"), "DL1ABC");
    EXPECT_EQ(records[0].value("COMMENT"), QString::fromUtf8("Grüß"));
    EXPECT_TRUE(records[0].error.isEmpty());
    EXPECT_EQ(records[1].line, 5);
    EXPECT_EQ(records[1].value("NAME"), QString::fromUtf8("Jürgn")) << "a value that is no UTF-8 is Latin-1";
    EXPECT_EQ(readAll("<CALL:6>DL1ABC ")[0].error, "the record is not ended by <EOR>");

    // A name given twice keeps its last value; CONT and CALL share length and first letter.
    const AdifRecord twice = readAll("<CONT:2>EU <CALL:5>G4ABC <call:6>DL1ABC <EOR>")[0];
    EXPECT_EQ(twice.fields.size(), 2);
    EXPECT_EQ(twice.value("CALL"), "DL1ABC");
    EXPECT_EQ(twice.value("CONT"), "EU");
    EXPECT_FALSE(twice.has("CQZ"));
    EXPECT_FALSE(readAll("<CONT:2>EU <EOR>")[0].has("CALL"));
}

TEST(AdifRead, LengthsInEveryWritingAndTheDamagedOnes)
{
    const struct {
        const char* length;
        const char* error;
    } cases[] = { { "6", "" }, { "006", "" }, { " 6 ", "" }, { "+6", "" }, { "6:S", "" },
        { "-6", "the tag <CALL:-6> is not of the form <NAME:length>" },
        { "6x", "the tag <CALL:6x> is not of the form <NAME:length>" },
        { "0x6", "the tag <CALL:0x6> is not of the form <NAME:length>" },
        { "99999999999999999999", "the tag <CALL:99999999999999999999> is not of the form <NAME:length>" },
        { "999999999999999999", "the value of CALL runs past the end of the file" } };
    for (const auto& c : cases) {
        const QList<AdifRecord> records = readAll("<CALL:" + QByteArray(c.length) + ">DL1ABC <EOR>");
        ASSERT_EQ(records.size(), 1) << c.length;
        EXPECT_EQ(records[0].error.toStdString(), c.error) << c.length;
        if (*c.error == 0) {
            EXPECT_EQ(records[0].value("CALL"), "DL1ABC") << c.length;
        }
    }
}

TEST(AdifMap, ExtraFieldsAreAdifTextSortedByNameWithLengthsInBytes)
{
    using Fields = QList<QPair<QString, QString>>;
    EXPECT_EQ(AdifMapping::extraText(Fields { { "STATE", "NY" }, { "IOTA", "EU-005" }, { "SOTA_REF", "" } }),
        "<IOTA:6>EU-005 <STATE:2>NY");
    EXPECT_EQ(AdifMapping::extraText(Fields { { "STATE", "NY" }, { "QTH", QString::fromUtf8("Zürich") } }),
        QString::fromUtf8("<QTH:7>Zürich <STATE:2>NY"));
    EXPECT_TRUE(AdifMapping::extraText(Fields { { "STATE", "" } }).isEmpty());
}

TEST(AdifMap, QslPropagationModesAndBandsInAdifTerms)
{
    const QList<std::tuple<QString, QString, QString>> qsl
        = { { "Q", "Y", "Y" }, { "T", "Q", "Y" }, { "Y", "Q", "N" }, { "S", "R", "N" }, { "N", "Y", "N" } };
    for (const auto& [letter, sent, rcvd] : qsl) {
        EXPECT_EQ(AdifMapping::qslStatus(letter).sent, sent) << letter.toStdString();
        EXPECT_EQ(AdifMapping::qslStatus(letter).rcvd, rcvd) << letter.toStdString();
    }
    for (const auto& [code, mode] : QList<std::pair<const char*, const char*>> {
             { "Tr", "TR" }, { "Au", "AUR" }, { "Ms", "MS" }, { "xx", "" } })
        EXPECT_EQ(AdifMapping::propMode(code), mode) << code;
    EXPECT_EQ(AdifMapping::propCode("AUE"), "Au");
    EXPECT_EQ(AdifMapping::modeFields("USB"), qMakePair(QString("SSB"), QString("USB")));
    EXPECT_EQ(AdifMapping::modeFields("FT4"), qMakePair(QString("MFSK"), QString("FT4")));
    EXPECT_EQ(AdifMapping::modeFields("CW"), qMakePair(QString("CW"), QString()));
    EXPECT_EQ(AdifMapping::field("CALL", QString::fromUtf8("Gr\u00fc")), QByteArray("<CALL:4>Gr\xc3\xbc "));
    EXPECT_EQ(AdifMapping::field("CALL", ""), QByteArray());

    for (const auto& [text, band, freq] :
        QList<std::tuple<const char*, const char*, const char*>> { { "14200", "20m", "14.200" },
            { "1014", "30m", "10.140" }, { "34", "9cm", "3400" }, { "144", "2m", "144" },
            { "14074", "20m", "14.074" }, { "10100", "30m", "10.1" }, { "abc", "", "" } }) {
        EXPECT_EQ(AdifBands::fromBandText(text).band, band) << text;
        EXPECT_EQ(AdifBands::fromBandText(text).freq, freq) << text;
    }
    for (const auto& [band, freq, text] : QList<std::tuple<const char*, const char*, const char*>> {
             { "30M", "", "10140" }, // the text the 30 m filter finds
             { "", "144.3", "144" }, { "", "3400.1", "34" }, { "60m", "5.357", "5357" }, { "4m", "", "70" },
             { "11m", "", "" }, { "", "27.5", "27500" } })
        EXPECT_EQ(AdifBands::bandTextFor(band, freq), text) << band << freq;
}

TEST(AdifMatch, LikeRulesAndTableOrder)
{
    EXPECT_TRUE(DxccIndex::like("dl1abc", "DL%") && DxccIndex::like("DL1ABC", "D_1%C"));
    EXPECT_TRUE(DxccIndex::like("EA8/DL1ABC", "%/DL%"));
    EXPECT_FALSE(DxccIndex::like("DL1ABC", "DL"));
    DxccIndex m;
    m.add("EA8%", "Canary Islands");
    m.add("%/B", "Beacon");
    m.add("EA%", "Spain");
    EXPECT_EQ(m.match("EA8AB").name, "Canary Islands");
    EXPECT_EQ(m.match("EA1AB").name, "Spain");
    EXPECT_EQ(m.match("EA1AB/B").name, "Beacon");
    EXPECT_EQ(m.find("EA1AB/B").name, "Spain") << "a beacon's /B says nothing of its place";
    EXPECT_FALSE(m.match("ZZ9").found);
}

TEST(AdifImportFile, GoodRecordsComeInAndBadOnesAreListed)
{
    EntryTestDb db;
    const QByteArray file
        = "Test file\n<EOH>\n"
          "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <EOR>\n"
          "<CALL:6>DL2ABC <QSO_DATE:8>20261315 <TIME_ON:4>1820 <BAND:2>2m <EOR>\n"
          "<CALL:4>DL3ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <EOR>\n"
          "<CALL:6>DL4ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <GRIDSQUARE:4>SO62 <BAND:2>2m <EOR>\n"
          "<CALL:6>DL5ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:3>11m <EOR>\n"
          "<QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <EOR>\n"
          "<CALL:6>DL7ABC <QSO_DATE:8>20261115 <TIME_ON:4>1821 <FREQ:6>14.074 <EOR>\n"
          "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:6>182059 <BAND:2>2M <EOR>\n"
          "<CALL:6>DL2ABC <QSO_DATE 8>20261115 <EOR>\n"
          "<CALL:6>DL3ABC <QSO_DATE:x>20261115 <EOR>\n"
          "<CALL:6>DL4ABC <BAND:2 2m <EOR>\n"
          "<CALL:6>DL8ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <COMMENT:40>short";
    // Only records without a call or a date, damaged ones and duplicates are refused; a field
    // that does not fit its column is kept as text.
    EXPECT_EQ(importText(db, file).toStdString(),
        "4 records imported from in.adi, 8 refused, 2 fields kept as text:\n"
        "line 4 (DL2ABC): QSO_DATE \"20261315\" is not a date (YYYYMMDD)\n"
        "line 5 (DL3A): text follows the value of CALL (is its length right?)\n"
        "line 8 (no call): no CALL\n"
        "line 10 (DL1ABC): the contact is already in the log\n"
        "line 11 (DL2ABC): the tag <QSO_DATE 8> has no length\n"
        "line 12 (DL3ABC): the tag <QSO_DATE:x> is not of the form <NAME:length>\n"
        "line 13 (DL4ABC): a field tag is not closed by \">\"\n"
        "line 14 (DL8ABC): the value of COMMENT runs past the end of the file\n"
        "line 6 (DL4ABC): GRIDSQUARE \"SO62\" is not a locator, kept as text\n"
        "line 7 (DL5ABC): BAND \"11m\" is no band of the log, kept as text");
    const QList<Row> rows = db.rows({ "Callsign", "Band", "Freq", "GMT", "DXCC", "Grid", "AdifExtra" });
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(rows[0]["Band"].toString(), "144");
    EXPECT_EQ(rows[0]["DXCC"].toString(), "Fed. Rep. of Germany");
    EXPECT_EQ(rows[1]["Grid"].toString(), "");
    EXPECT_EQ(rows[1]["AdifExtra"].toString(), "<GRIDSQUARE:4>SO62");
    EXPECT_EQ(rows[2]["Band"].toString(), "");
    EXPECT_EQ(rows[2]["AdifExtra"].toString(), "<BAND:3>11m");
    EXPECT_EQ(rows[3]["Callsign"].toString(), "DL7ABC");
    EXPECT_EQ(rows[3]["Band"].toString(), "14200");
    EXPECT_EQ(rows[3]["Freq"].toString(), "14.074");
    EXPECT_EQ(rows[3]["GMT"].toString(), "18:21");
}

TEST(AdifImportFile, LocatorsGetDistanceBearingAndMapTexts)
{
    EntryTestDb db;
    const QByteArray file
        = "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <GRIDSQUARE:6>jo62qm "
          "<RST_SENT:2>59 "
          "<RST_RCVD:2>57 <QSL_SENT:1>Q <QSL_RCVD:1>N <PROP_MODE:2>TR <COMMENT:3>tnx <COUNTRY:7>Germany "
          "<EOR>\n"
          "<CALL:5>G4ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <DISTANCE:5>321.5 <EOR>\n";
    importText(db, file);
    const QList<Row> rows
        = db.rows({ "Grid", "QRB", "QTF", "GEdata", "GEgridXY", "DXCC", "QSL", "Prop", "AdifExtra" });
    ASSERT_EQ(rows.size(), 2);
    MapPosition p;
    ASSERT_TRUE(db.locator()("JO62QM", p));
    EXPECT_EQ(rows[0]["Grid"].toString(), "JO62QM");
    EXPECT_EQ(rows[0]["QRB"].toDouble(), ContactSave::storedNumber(p.distanceKm));
    EXPECT_EQ(rows[0]["QTF"].toDouble(), ContactSave::storedNumber(p.bearing));
    EXPECT_EQ(rows[0]["GEgridXY"].toString(), p.coordText);
    EXPECT_TRUE(rows[0]["GEdata"].toString().startsWith(
        "Log: DL1ABC 144 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:"));
    EXPECT_TRUE(rows[0]["GEdata"].toString().endsWith(" QSL: Y Prop:Tr tnx"));
    // The entity is looked up; the station's COUNTRY stays as its claim.
    EXPECT_EQ(rows[0]["DXCC"].toString(), "Fed. Rep. of Germany");
    EXPECT_EQ(rows[0]["AdifExtra"].toString(), "<COUNTRY:7>Germany");
    // A distance without a locator has nothing to stand for in QRB.
    EXPECT_TRUE(rows[1]["QRB"].isNull());
    EXPECT_EQ(rows[1]["AdifExtra"].toString(), "<DISTANCE:5>321.5");
    EXPECT_TRUE(rows[1]["QTF"].isNull());
    EXPECT_TRUE(rows[1]["GEdata"].isNull());
    EXPECT_EQ(rows[1]["DXCC"].toString(), "England");
}

TEST(AdifImportFile, AnOldLogWithoutMapColumnsAndAMissingFile)
{
    TempDir dir;
    const QString path = dir.file("old.db");
    ASSERT_TRUE(execAll(path, { LogbookSchema::oldLogtab(), LogbookSchema::dxccTable() }, true));
    AdifImport import(path, {});
    ASSERT_EQ(
        finish(import,
            import.startData(
                "<CALL:6>DL1ABC <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <GRIDSQUARE:4>JO62 <EOR>",
                "old.adi")),
        AdifImport::State::Done)
        << import.error().text().toStdString();
    EXPECT_EQ(import.imported(), 1);

    AdifImport missing(path, {});
    EXPECT_EQ(missing.start(dir.file("none.adi")), AdifImport::State::Failed);
    EXPECT_TRUE(missing.error().description.startsWith("The ADIF file cannot be read"));
}

// The records are mapped ahead on a thread of their own; the duplicate check and the inserts
// must still go in file order, slice after slice, and a cancel keeps exactly the records taken.
TEST(AdifImportFile, SlicesAndACancelKeepFileOrder)
{
    // 700 records, one a line from line 3: every 10th repeats the one before (refused), every
    // 97th has no CALL (refused), every 50th a grid that is no locator (kept as text).
    QByteArray file = "Test file\n<EOH>\n";
    QStringList stored;
    QStringList listed;
    QStringList kept;
    for (int i = 0; i < 700; ++i) {
        const QByteArray call = "DL" + QByteArray::number(i % 10 == 9 ? i - 1 : i) + "X";
        const QByteArray grid = i % 50 == 7 ? "SO62" : "JO62QM";
        const int line = i + 3;
        if (i % 97 == 96) {
            file += "<QSO_DATE:8>20261115 <EOR>\n";
            listed << QStringLiteral("line %1 (no call): no CALL").arg(line);
            continue;
        }
        file += "<CALL:" + QByteArray::number(call.size()) + '>' + call
            + " <QSO_DATE:8>20261115 <TIME_ON:4>1820 <BAND:2>2m <GRIDSQUARE:"
            + QByteArray::number(grid.size()) + '>' + grid + " <EOR>\n";
        if (i % 10 == 9 && (i - 1) % 97 != 96) {
            listed << QStringLiteral("line %1 (%2): the contact is already in the log").arg(line).arg(call);
            continue;
        }
        stored << QString::fromLatin1(call);
        if (grid == "SO62")
            kept << QStringLiteral("line %1 (%2): GRIDSQUARE \"SO62\" is not a locator, kept as text")
                        .arg(line)
                        .arg(call);
    }

    EntryTestDb db;
    AdifImport import(db.path(), db.locator());
    int slices = 0;
    for (auto s = import.startData(file, "test.adi"); s == AdifImport::State::Running; ++slices)
        s = import.step(0); // a few dozen records a slice
    ASSERT_EQ(import.state(), AdifImport::State::Done) << import.error().text().toStdString();
    EXPECT_GT(slices, 5);
    EXPECT_EQ(import.done(), import.total());
    EXPECT_EQ(import.imported(), stored.size());
    EXPECT_EQ(import.refusalList(), (listed + kept).join('\n'));
    QStringList calls;
    for (const Row& r : db.rows({ "Callsign" }))
        calls << r["Callsign"].toString();
    EXPECT_EQ(calls, stored);

    struct Case {
        const char* name;
        bool cancel;
    };
    for (const Case& c :
        { Case { "cancelled after one slice", true }, Case { "dropped after one slice", false } }) {
        SCOPED_TRACE(c.name);
        EntryTestDb to;
        int imported = -1;
        {
            AdifImport part(to.path(), to.locator());
            ASSERT_EQ(part.startData(file, "test.adi"), AdifImport::State::Running);
            ASSERT_EQ(part.step(0), AdifImport::State::Running);
            EXPECT_LT(part.done(), part.total());
            if (c.cancel) {
                part.cancel();
                EXPECT_EQ(part.state(), AdifImport::State::Cancelled);
                EXPECT_TRUE(part.report().contains("(the import was stopped before the end of the file)"));
                imported = part.imported();
            }
        } // dropped: the destructor stores what was taken
        const QList<Row> rows = to.rows({ "Callsign" });
        ASSERT_GT(rows.size(), 0);
        ASSERT_LT(rows.size(), stored.size());
        if (c.cancel) {
            EXPECT_EQ(rows.size(), imported);
        }
        for (qsizetype i = 0; i < rows.size(); ++i)
            EXPECT_EQ(rows[i]["Callsign"].toString(), stored[i]);
    }
}

TEST(AdifRoundTrip, ThousandContactsKeepEveryMappedField)
{
    EntryTestDb from;
    EntryTestDb to;
    QRandomGenerator rng(2026);
    auto pick = [&rng](const QStringList& list) { return list[rng.bounded(int(list.size()))]; };
    // Every mapped column with the values a contact may carry; "" is left out of the file.
    const QList<std::pair<QString, QStringList>> pools
        = { { "Grid", { "", "JO62QM", "JN48", "IO91WM", "KP20", "FN31PR", "JO31AB12", "RR73", "AA00AA" } },
              { "Band",
                  { "1840", "3600", "7050", "1014", "10140", "14200", "18110", "21150", "24950", "28400",
                      "50", "144", "432", "1296", "2320", "34", "5760", "10368", "24048", "47088", "76032",
                      "122250", "14074", "145" } },
              { "rsts", { "59", "599", "55", "" } }, { "rstr", { "57", "579", "" } },
              { "mode", { "SSB", "CW", "FM", "FT8", "FT4", "USB", "" } },
              { "Nam", { "Hans", QString::fromUtf8("Jürgen"), "", "O'Neill" } },
              { "Comment", { "tnx", "<b> & \"quotes\"", "", QString::fromUtf8("73 de ÅÄÖ") } },
              { "QSL", { "Y", "S", "T", "Q", "N", "D", "B", "q", "" } },
              { "Prop", { "Tr", "Rs", "Es", "Au", "Ms", "", "EME", "tr" } }, { "QSLman", { "", "DL9XX" } },
              { "Freq", { "", "", "14.074", "144.3" } }, { "TxPwr", { "", "100" } },
              { "Antenna", { "", "4x17el" } }, { "MyCall", { "", "N0CALL" } }, { "MyGrid", { "", "JN48OW" } },
              { "Contest", { "", "DARC-VHF" } }, { "NrSent", { "", "001", "12A" } },
              { "NrRcvd", { "", "123", "7B" } }, { "QSLsent", { "", "20261120" } },
              { "QSLrcvd", { "", "20261201" } }, { "Cont", { "EU", "AF" } }, { "CQZone", { "14", "33" } },
              { "ITUZone", { "28", "36" } }, { "Remarks", { "", "first on 24 GHz" } } };
    // The entity goes with the call (the import looks it up); zones and continent are given,
    // as the export would fill empty ones from the prefix list.
    const QMap<QString, QString> entities = { { "DL", "Fed. Rep. of Germany" }, { "G", "England" },
        { "EA8", "Canary Islands" }, { "K", "United States" }, { "JA", "Japan" } };
    QStringList mapped = { "Callsign", "Date", "GMT", "QRB", "QTF", "DXCC" };
    for (const auto& pool : pools)
        mapped << pool.first;
    QList<Row> contacts;
    for (int i = 0; i < 1000; ++i) {
        const QString prefix = pick(entities.keys());
        Row r { { "Date", QDate(2020, 1, 1).addDays(rng.bounded(2500)).toString("yyyy-MM-dd") },
            { "GMT", QTime(0, 0).addSecs(rng.bounded(86400)).toString("HH:mm:ss") },
            { "Callsign", QStringLiteral("%1%2AB").arg(prefix).arg(i) }, { "DXCC", entities[prefix] } };
        for (const auto& [column, values] : pools) {
            const QString v = pick(values);
            r[column] = v.isEmpty() && column.endsWith("Zone") ? QVariant() : QVariant(v);
        }
        MapPosition p;
        if (!r["Grid"].toString().isEmpty() && from.locator()(r["Grid"].toString(), p)) {
            r["QRB"] = ContactSave::storedNumber(p.distanceKm);
            r["QTF"] = ContactSave::storedNumber(p.bearing);
        } else if (!r["Grid"].toString().isEmpty()) {
            r["QRB"] = rng.bounded(3) ? QVariant(rng.bounded(20000) / 8.0) : QVariant();
        }
        contacts << r;
    }
    ASSERT_TRUE(from.add(contacts));

    QString report;
    const QByteArray file = exportText(from, QString(), &report);
    EXPECT_EQ(report, "1000 records written to out.adi.");
    report = importText(to, file);
    EXPECT_TRUE(report.startsWith("1000 records imported")) << report.toStdString();

    // NULL and empty text are the same in ADIF (an empty field is not written): both read "".
    const QStringList before = rowLines(from, mapped);
    const QStringList after = rowLines(to, mapped);
    ASSERT_EQ(after.size(), 1000);
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(after[i].toStdString(), before[i].toStdString());
}

TEST(AdifRoundTrip, ExportOfOneBandAndAFailedExportKeepsTheOldFile)
{
    EntryTestDb db;
    ASSERT_TRUE(db.add({ { { "Callsign", "DL1ABC" }, { "Band", "144" }, { "Date", "2026-11-15" } },
        { { "Callsign", "G4ABC" }, { "Band", "14200" }, { "Date", "2026-11-14" } } }));
    AdifExport band(db.path(), "144%");
    const QString path = db.dir.file("band.adi");
    ASSERT_EQ(finish(band, band.start(path)), AdifExport::State::Done);
    const QByteArray text = db.dir.read("band.adi");
    EXPECT_TRUE(text.startsWith("Kestrel logbook export\n<ADIF_VER:5>3.1.4 \n<PROGRAMID:7>Kestrel \n"));
    EXPECT_TRUE(
        text.contains("<EOH>\n<CALL:6>DL1ABC <QSO_DATE:8>20261115 <BAND:2>2m <FREQ:3>144 "
                      "<COUNTRY:20>Fed. Rep. of Germany <DXCC:3>230 <CONT:2>EU <CQZ:2>14 <ITUZ:2>28 <EOR>\n"))
        << text.toStdString();

    AdifExport cancelled(db.path(), QString());
    ASSERT_EQ(cancelled.start(path), AdifExport::State::Running);
    cancelled.cancel();
    EXPECT_EQ(db.dir.read("band.adi"), text);
    AdifExport nowhere(db.path(), QString());
    EXPECT_EQ(nowhere.start(db.dir.file("no/such/dir/x.adi")), AdifExport::State::Failed);
}
