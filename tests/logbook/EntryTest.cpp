// The entry line's rules without a window: band table, key table, new-contact defaults, mode
// preset, locator check, the GEdata summary and the save into a real database file.
#include "EntryTestDb.h"
#include "logbook/db/SqlText.h"
#include "logbook/entry/BandTable.h"
#include "logbook/entry/ContactSave.h"
#include "logbook/entry/ContactSummary.h"
#include "logbook/entry/EntryKeys.h"
#include "logbook/entry/EntryRules.h"
#include "logbook/entry/LogClock.h"

namespace {

EntryLine filledLine()
{
    EntryLine l;
    l.DA = "15.11.2026";
    l.GM = "18:20:00";
    l.Ca = "DL1ABC";
    l.Gr = "JO62QM";
    l.Rss = "59";
    l.Rr = "57";
    l.Ba = "14200";
    l.mo = "SSB";
    l.Na = "Hans";
    l.Co = "tnx";
    l.Qs = "Y";
    l.Pr = "Tr";
    l.cou = "Fed. Rep. of Germany";
    return l;
}

} // namespace

TEST(EntryBands, TableOfTheTwentyTwoButtons)
{
    const QStringList patterns = { "1840%", "3600%", "7050%", "10140", "14200%", "18110%", "21150%", "24950%",
        "28400%", "50%", "144%", "432%", "1296%", "2320%", "34%", "5760%", "10368%", "24048%", "47088%",
        "76032%", "122250%", "" };
    ASSERT_EQ(BandTable::Count, 22);
    for (int i = 0; i < BandTable::Count; ++i) {
        EXPECT_EQ(BandTable::pattern(i), patterns[i]) << i;
        EXPECT_EQ(BandTable::indexOf(patterns[i]), i);
    }
    EXPECT_EQ(BandTable::bandText(BandTable::pattern(3)), "1014"); // deliberate
    EXPECT_EQ(BandTable::bandText("144%"), "144");
    EXPECT_EQ(BandTable::bandText(""), "");
    EXPECT_EQ(BandTable::pattern(22), "");
    EXPECT_EQ(BandTable::pattern(-1), "");
    EXPECT_EQ(BandTable::caption(3), "30m");
    EXPECT_EQ(BandTable::caption(21), "all");
}

TEST(EntryKeysTable, EnterWalksTheLineAndEndsOnSave)
{
    QList<EntryField> chain { EntryField::Ca };
    while (chain.last() != EntryField::Save && chain.size() < 20)
        chain << EntryKeys::next(chain.last(), EntryKey::Enter);
    EXPECT_EQ(chain,
        (QList<EntryField> { EntryField::Ca, EntryField::Gr, EntryField::Rss, EntryField::Rr, EntryField::Ba,
            EntryField::mo, EntryField::Na, EntryField::Co, EntryField::Qs, EntryField::Pr,
            EntryField::Save }));
}

TEST(EntryKeysTable, ArrowsOnlyWhereTheTableSays)
{
    EXPECT_EQ(EntryKeys::next(EntryField::Ca, EntryKey::Right), EntryField::Gr);
    EXPECT_EQ(EntryKeys::next(EntryField::Ca, EntryKey::Left), EntryField::Ca);
    EXPECT_EQ(EntryKeys::next(EntryField::Gr, EntryKey::Right), EntryField::Rss);
    EXPECT_EQ(EntryKeys::next(EntryField::Gr, EntryKey::Left), EntryField::Ca);
    EXPECT_FALSE(EntryKeys::moves(EntryField::Gr, EntryKey::Other));
    EXPECT_FALSE(EntryKeys::moves(EntryField::Rss, EntryKey::Right));
    EXPECT_FALSE(EntryKeys::moves(EntryField::Rr, EntryKey::Other));
    EXPECT_FALSE(EntryKeys::moves(EntryField::DA, EntryKey::Enter));
    EXPECT_FALSE(EntryKeys::moves(EntryField::Pr, EntryKey::Left));
}

TEST(EntryNewContact, WithoutBandClearsExactlySevenFields)
{
    EntryLine l = filledLine();
    EXPECT_FALSE(EntryRules::NewContact(l, QString(), QDateTime::currentDateTime()));
    for (const QString& cleared : { l.GM, l.DA, l.Rss, l.Rr, l.mo, l.Qs, l.Pr })
        EXPECT_TRUE(cleared.isEmpty());
    EXPECT_EQ(l.Ca, "DL1ABC");
    EXPECT_EQ(l.Gr, "JO62QM");
    EXPECT_EQ(l.Ba, "14200");
    EXPECT_EQ(l.Na, "Hans");
    EXPECT_EQ(l.Co, "tnx");
    EXPECT_EQ(l.cou, "Fed. Rep. of Germany");
}

TEST(EntryNewContact, DefaultsAndTheBandTextOfThirtyMetres)
{
    EntryLine l = filledLine();
    const QDateTime now(QDate(2026, 11, 15), QTime(18, 20, 7));
    ASSERT_TRUE(EntryRules::NewContact(l, BandTable::pattern(3), now));
    EXPECT_EQ(l.DA, "15.11.2026");
    EXPECT_EQ(l.GM, "18:20:07"); // the local clock as it stands
    EXPECT_EQ(l.Rss, "59");
    EXPECT_EQ(l.Rr, "59");
    EXPECT_EQ(l.mo, "SSB");
    EXPECT_EQ(l.Qs, "Y");
    EXPECT_EQ(l.Pr, "Tr");
    EXPECT_EQ(l.Ba, "1014");
    EXPECT_EQ(l.Ca, "DL1ABC");
    EXPECT_EQ(l.Na, "Hans");
    ASSERT_TRUE(EntryRules::NewContact(l, "144%", now));
    EXPECT_EQ(l.Ba, "144");
}

TEST(EntryModePreset, ThreeCharactersAreCw)
{
    EXPECT_EQ(EntryRules::ModePreset("599"), "CW");
    EXPECT_EQ(EntryRules::ModePreset("5N9"), "CW");
    EXPECT_EQ(EntryRules::ModePreset("59"), "SSB");
    EXPECT_EQ(EntryRules::ModePreset("5990"), "SSB");
    EXPECT_EQ(EntryRules::ModePreset(""), "SSB");
}

TEST(EntryLocator, UpperCasesAndChecksLengthAndPattern)
{
    QString t = "jo62";
    EXPECT_TRUE(EntryRules::CheckEntryLocator(t));
    EXPECT_EQ(t, "JO62");
    for (const char* bad : { "JO6", "JO62Q", "SO62", "JO6A", "J062", "JO62QM1", "JO62QM123" }) {
        QString b = QLatin1String(bad);
        EXPECT_FALSE(EntryRules::CheckEntryLocator(b)) << bad;
    }
    for (const char* good : { "jo62qm", "JO62QM12", "JO62QM12AB", "RR99XX" }) {
        QString g = QLatin1String(good);
        EXPECT_TRUE(EntryRules::CheckEntryLocator(g)) << good;
    }
    QString empty;
    EXPECT_TRUE(EntryRules::CheckEntryLocator(empty));
}

TEST(EntrySummary, ReadsExactlyAsTheMapShowsIt)
{
    SummaryValues v { "DL1ABC", "14200", "15.11.2026", "18:20:00", "59", "57", 512.0f, 87.0f, "Y", "Tr",
        "tnx" };
    EXPECT_EQ(ContactSummary::text(v),
        "Log: DL1ABC 14200 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:512km  QTF:87 QSL: Y Prop:Tr tnx");
    v.band = "144";
    v.date = "2026-11-15"; // as stored
    v.time = "1820";
    EXPECT_EQ(ContactSummary::text(v),
        "Log: DL1ABC 144 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:512km  QTF:87 QSL: Y Prop:Tr tnx");
}

TEST(EntrySummary, NumbersInTheDefaultTextForm)
{
    EXPECT_EQ(ContactSummary::numberText(512.0f), "512");
    EXPECT_EQ(ContactSummary::numberText(87.5f), "87.5");
    EXPECT_EQ(ContactSummary::numberText(1234.5678f), "1234.568");
    EXPECT_EQ(ContactSummary::numberText(0.0f), "0");
    EXPECT_EQ(ContactSummary::numberText(-12.25f), "-12.25");
    EXPECT_EQ(ContactSummary::dateText("no date"), "no date");
    EXPECT_EQ(ContactSummary::timeText("late"), "late");
    EXPECT_EQ(ContactSummary::timeText("7:05"), "07:05");
}

TEST(EntrySave, FieldsInTheWindowsOrder)
{
    QStringList columns;
    for (const SavedField& f : ContactSave::fields(filledLine(), {}))
        columns << f.column;
    EXPECT_EQ(columns,
        (QStringList { "Date", "GMT", "Callsign", "Grid", "rsts", "rstr", "Band", "mode", "Nam", "Comment",
            "QSL", "Prop", "DXCC", "QRB", "QTF", "GEdata", "GEgridXY" }));
}

TEST(EntrySave, EveryColumnReadsBackFromTheFile)
{
    EntryTestDb db;
    ASSERT_TRUE(db.created);
    const MapPosition stored { "13.3333333333333,52.5", 512.0f, 87.0f };
    ASSERT_FALSE(ContactSave::save(db.path(), ContactSave::fields(filledLine(), stored)));
    const QStringList cols = { "Date", "GMT", "Callsign", "Grid", "rsts", "rstr", "Band", "mode", "Nam",
        "Comment", "QSL", "Prop", "DXCC", "QRB", "QTF", "QSLman", "GEdata", "GEpoly", "GEgridXY" };
    const QList<Row> rows = db.rows(cols);
    ASSERT_EQ(rows.size(), 1);
    const Row& r = rows[0];
    EXPECT_EQ(r["Date"].toString(), "2026-11-15");
    EXPECT_EQ(r["GMT"].toString(), "18:20:00");
    EXPECT_EQ(r["Callsign"].toString(), "DL1ABC");
    EXPECT_EQ(r["Grid"].toString(), "JO62QM");
    EXPECT_EQ(r["rsts"].toString(), "59");
    EXPECT_EQ(r["rstr"].toString(), "57");
    EXPECT_EQ(r["Band"].toString(), "14200");
    EXPECT_EQ(r["mode"].toString(), "SSB");
    EXPECT_EQ(r["Nam"].toString(), "Hans");
    EXPECT_EQ(r["Comment"].toString(), "tnx");
    EXPECT_EQ(r["QSL"].toString(), "Y");
    EXPECT_EQ(r["Prop"].toString(), "Tr");
    EXPECT_EQ(r["DXCC"].toString(), "Fed. Rep. of Germany");
    EXPECT_EQ(r["QRB"].toFloat(), 512.0f);
    EXPECT_EQ(r["QTF"].toFloat(), 87.0f);
    EXPECT_TRUE(r["QSLman"].isNull());
    EXPECT_EQ(r["GEdata"].toString(),
        "Log: DL1ABC 14200 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:512km  QTF:87 QSL: Y Prop:Tr tnx");
    EXPECT_TRUE(r["GEpoly"].isNull());
    EXPECT_EQ(r["GEgridXY"].toString(), "13.3333333333333,52.5");
}

TEST(EntrySave, EmptyLineIsSavedAsItIsAndFractionsKeepSevenDigits)
{
    EntryTestDb db;
    EntryLine empty;
    ASSERT_FALSE(ContactSave::save(db.path(), ContactSave::fields(empty, { {}, 1234.5678f, 87.25f })));
    const QList<Row> rows = db.rows({ "Callsign", "QRB", "QTF", "GEdata" });
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0]["Callsign"].toString(), "");
    EXPECT_DOUBLE_EQ(rows[0]["QRB"].toDouble(), 1234.568);
    EXPECT_EQ(rows[0]["QRB"].toDouble(), ContactSave::storedNumber(1234.5678f));
    EXPECT_EQ(
        rows[0]["GEdata"].toString(), "Log:   kHz   rsts: rstr: QRB:1234.568km  QTF:87.25 QSL:  Prop: ");
}

TEST(EntrySave, AFileThatCannotBeWrittenGivesTheError)
{
    EntryTestDb db;
    const DbError e = ContactSave::save(db.dir.file("missing.db"), ContactSave::fields(filledLine(), {}));
    EXPECT_TRUE(e.isError());
    EXPECT_EQ(ContactSave::NoNewRecordset, "No new Recorset available");
}

TEST(EntryClock, DatesAndTimesOfTheLogReadFast)
{
    EXPECT_EQ(LogClock::date("2026-11-15"), QDate(2026, 11, 15));
    EXPECT_EQ(LogClock::date("15.11.2026"), QDate(2026, 11, 15));
    EXPECT_EQ(LogClock::date("5.1.2026"), QDate(2026, 1, 5)); // the general parser's forms still
    EXPECT_FALSE(LogClock::date("2026-13-01").isValid());
    EXPECT_FALSE(LogClock::date("31.02.2026").isValid());
    EXPECT_FALSE(LogClock::date("2026-1x-01").isValid());
    EXPECT_EQ(LogClock::compactDate("20261115"), QDate(2026, 11, 15));
    EXPECT_FALSE(LogClock::compactDate("2026111").isValid());
    EXPECT_EQ(LogClock::displayDate(QDate(2026, 1, 5)), "05.01.2026");
    EXPECT_EQ(LogClock::storedDate(QDate(2026, 1, 5)), "2026-01-05");
    EXPECT_EQ(LogClock::compactDateText(QDate(2026, 1, 5)), "20260105");

    bool seconds = true;
    EXPECT_EQ(LogClock::time("18:20", &seconds), QTime(18, 20));
    EXPECT_FALSE(seconds);
    EXPECT_EQ(LogClock::time("7:05:09", &seconds), QTime(7, 5, 9));
    EXPECT_TRUE(seconds);
    EXPECT_EQ(LogClock::time("182007"), QTime(18, 20, 7));
    EXPECT_EQ(LogClock::time(" 0000 "), QTime(0, 0));
    for (const char* bad : { "24:00", "18:6", "1860", "18:20:", "abc", "", "18-20", "123" })
        EXPECT_FALSE(LogClock::time(QLatin1String(bad)).isValid()) << bad;
    EXPECT_EQ(LogClock::hoursMinutesSeconds(QTime(7, 5, 9)), "07:05:09");
    EXPECT_EQ(LogClock::compactTime(QTime(7, 5, 9), false), "0705");
}
