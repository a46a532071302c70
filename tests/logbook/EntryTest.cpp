// The entry line's rules without a window: band table, key table, new-contact clock, locator
// edge cases, the GEdata summary and the save of an empty line.
#include "EntryTestDb.h"
#include "logbook/entry/BandTable.h"
#include "logbook/entry/ContactSave.h"
#include "logbook/entry/ContactSummary.h"
#include "logbook/entry/ContestNumbers.h"
#include "logbook/entry/EntryKeys.h"
#include "logbook/entry/EntryRules.h"
#include "logbook/entry/LogClock.h"

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
    EXPECT_EQ(BandTable::bandText("144%"), "144");
    EXPECT_EQ(BandTable::pattern(22), "");
    EXPECT_EQ(BandTable::caption(3), "30m");
    EXPECT_EQ(BandTable::caption(21), "all");
}

TEST(EntryKeysTable, ArrowsOnlyWhereTheTableSays)
{
    EXPECT_EQ(EntryKeys::next(EntryField::Ca, EntryKey::Right), EntryField::Gr);
    EXPECT_EQ(EntryKeys::next(EntryField::Gr, EntryKey::Right), EntryField::Rss);
    EXPECT_EQ(EntryKeys::next(EntryField::Gr, EntryKey::Left), EntryField::Ca);
    const QList<std::pair<EntryField, EntryKey>> still
        = { { EntryField::Ca, EntryKey::Left }, { EntryField::Gr, EntryKey::Other },
              { EntryField::Rss, EntryKey::Right }, { EntryField::Rr, EntryKey::Other },
              { EntryField::DA, EntryKey::Enter }, { EntryField::Pr, EntryKey::Left } };
    for (const auto& [field, key] : still)
        EXPECT_FALSE(EntryKeys::moves(field, key)) << int(field) << " " << int(key);
}

TEST(EntryNewContact, DateAndTimeFromTheLocalClock)
{
    EntryLine l;
    ASSERT_TRUE(EntryRules::NewContact(l, "144%", QDateTime(QDate(2026, 11, 5), QTime(8, 20, 7))));
    EXPECT_EQ(l.DA, "05.11.2026");
    EXPECT_EQ(l.GM, "08:20:07");
    EXPECT_EQ(l.Ba, "144");
}

TEST(EntryRules, LocatorCheckBeyondTheWindowsCases)
{
    for (const char* bad : { "JO6A", "J062", "JO62QM1", "JO62QM123" }) {
        QString b = QLatin1String(bad);
        EXPECT_FALSE(EntryRules::CheckEntryLocator(b)) << bad;
    }
    for (const char* good : { "jo62qm", "JO62QM12", "JO62QM12AB", "RR99XX" }) {
        QString g = QLatin1String(good);
        EXPECT_TRUE(EntryRules::CheckEntryLocator(g)) << good;
    }
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

TEST(EntrySave, FieldsInTheWindowsOrder)
{
    QStringList columns;
    for (const SavedField& f : ContactSave::fields(EntryLine(), {}))
        columns << f.column;
    EXPECT_EQ(columns,
        (QStringList { "Date", "GMT", "Callsign", "Grid", "rsts", "rstr", "Band", "mode", "Nam", "Comment",
            "QSL", "Prop", "DXCC", "QRB", "QTF", "GEdata", "GEgridXY" }));
}

TEST(EntrySave, SerialNumbersGoToNrSentAndNrRcvdAndCountPerBand)
{
    EntryTestDb db;
    EXPECT_EQ(ContestNumbers::nextSent(db.path(), "144%"), ""); // nothing numbered yet
    EntryLine l;
    l.Ba = "144";
    l.Ns = " 001 ";
    l.Nr = "17";
    ASSERT_FALSE(ContactSave::save(db.path(), ContactSave::fields(l, {})));
    ASSERT_TRUE(db.add({ contact("DL2ABC", "JO62", "144", { { "NrSent", "012" } }),
        contact("DL3ABC", "JO62", "144", { { "NrSent", "9" } }),
        contact("DL4ABC", "JO62", "144", { { "NrSent", "A7" } }),
        contact("DL5ABC", "JO62", "432", { { "NrSent", "050" } }), contact("DL6ABC", "JO62", "1296") }));
    const struct {
        const char* pattern;
        const char* next;
    } cases[] = { { "144%", "013" }, { "432%", "051" }, { "1296%", "" }, { "", "051" } };
    for (const auto& c : cases)
        EXPECT_EQ(ContestNumbers::nextSent(db.path(), c.pattern), QString(c.next)) << c.pattern;
    const QList<Row> rows = db.rows({ "NrSent", "NrRcvd" });
    EXPECT_EQ(rows[0]["NrSent"].toString(), "001");
    EXPECT_EQ(rows[0]["NrRcvd"].toString(), "17");
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
    EXPECT_EQ(
        rows[0]["GEdata"].toString(), "Log:   kHz   rsts: rstr: QRB:1234.568km  QTF:87.25 QSL:  Prop: ");
}

TEST(EntryClock, FastDateAndTimeReadersRefuseWhatIsNoDateOrTime)
{
    EXPECT_EQ(LogClock::date("5.1.2026"), QDate(2026, 1, 5)); // the general parser's forms still
    for (const char* bad : { "2026-13-01", "31.02.2026", "2026-1x-01" })
        EXPECT_FALSE(LogClock::date(bad).isValid()) << bad;
    EXPECT_FALSE(LogClock::compactDate("2026111").isValid());
    bool seconds = true;
    EXPECT_EQ(LogClock::time(" 1820 ", &seconds), QTime(18, 20));
    EXPECT_FALSE(seconds);
    for (const char* bad : { "24:00", "18:6", "1860", "18:20:", "abc", "", "18-20", "123" })
        EXPECT_FALSE(LogClock::time(QLatin1String(bad)).isValid()) << bad;
}
