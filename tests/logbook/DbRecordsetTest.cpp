// Recordsets on a real SQLite file in a temporary folder.
#include "DbTestSupport.h"
#include "logbook/db/LogDate.h"

namespace {

class DbRecordset : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(db.created); }
    TestDb db;
};

TEST_F(DbRecordset, AppendedRowIsReadBackAndUpdatedThroughAnotherRecordset)
{
    {
        Recordset rs(db.path());
        ASSERT_TRUE(rs.open(SqlText::LogList));
        EXPECT_TRUE(rs.atStart() && rs.atEnd());
        ASSERT_TRUE(rs.addNew());
        EXPECT_TRUE(rs.setValue("Date", "2026-11-15"));
        EXPECT_TRUE(rs.setValue("callsign", "DL1ABC"));
        EXPECT_TRUE(rs.setValue("QRB", 512.5f));
        EXPECT_TRUE(rs.setValue("GEdata", "Log: DL1ABC 144 kHz  15.11.2026"));
        EXPECT_TRUE(rs.setValue("Comment", QString()));
        ASSERT_TRUE(rs.update()) << rs.errorText().toStdString();
    }
    {
        Recordset rs(db.path());
        ASSERT_TRUE(rs.open(SqlText::LogList));
        ASSERT_EQ(rs.recordCount(), 1);
        EXPECT_EQ(rs.text("CALLSIGN"), "DL1ABC");
        EXPECT_DOUBLE_EQ(rs.value("qrb").toDouble(), 512.5);
        EXPECT_FALSE(rs.value("Comment").isNull()) << "an empty text is stored as text, not NULL";
        EXPECT_TRUE(rs.value("Nam").isNull());
        ASSERT_TRUE(rs.setValue("qsl", "Q"));
        ASSERT_TRUE(rs.update()) << rs.errorText().toStdString();
    }
    Recordset rs(db.path());
    ASSERT_TRUE(rs.open(SqlText::LogList));
    EXPECT_EQ(rs.text("QSL"), "Q");
    EXPECT_EQ(rs.text("GEdata"), "Log: DL1ABC 144 kHz  15.11.2026");
    EXPECT_EQ(rs.text("date"), "2026-11-15");
    EXPECT_EQ(rs.fieldIndex("GEGRIDXY"), 33);
    EXPECT_EQ(rs.fieldIndex("nosuch"), -1);
}

TEST_F(DbRecordset, MovingSavesPendingChangesAndADeletedRowStaysCurrentUntilTheNextMove)
{
    ASSERT_TRUE(db.add({ contact("A1A", "", "144"), contact("B2B", "", "144"), contact("C3C", "", "144") }));
    Recordset rs(db.path());
    ASSERT_TRUE(rs.open(SqlText::LogList));
    EXPECT_FALSE(rs.atStart());
    ASSERT_TRUE(rs.setValue("QSL", "S"));
    EXPECT_EQ(rs.text("qsl"), "S") << "a pending value reads back";
    ASSERT_TRUE(rs.next());
    EXPECT_FALSE(rs.isEditing()) << "the move saved it";
    ASSERT_TRUE(rs.deleteCurrent()) << rs.errorText().toStdString();
    EXPECT_EQ(rs.recordCount(), 2);
    EXPECT_FALSE(rs.value("Callsign").isValid());
    EXPECT_EQ(rs.error().number, DbErrorNumber::NoCurrentRecord);
    ASSERT_TRUE(rs.next());
    EXPECT_EQ(rs.text("Callsign"), "C3C");
    EXPECT_FALSE(rs.next());
    EXPECT_TRUE(rs.atEnd());
    EXPECT_TRUE(rs.last());
    EXPECT_FALSE(rs.previous() && rs.previous());
    EXPECT_TRUE(rs.atStart());
    Recordset again(db.path());
    ASSERT_TRUE(again.open(SqlText::LogList));
    EXPECT_EQ(fieldColumn(again, "Callsign"), (QStringList { "A1A", "C3C" }));
    EXPECT_EQ(again.text("QSL"), "S");
}

TEST(DbLogDate, StoredIsoAndShownDayMonthYear)
{
    const QList<std::pair<const char*, const char*>> stored
        = { { "15.11.2026", "2026-11-15" }, { "5.1.2026", "2026-01-05" }, { "05.01.26", "2026-01-05" },
              { "05.01.85", "1985-01-05" }, { "2026-11-15", "2026-11-15" }, { "yesterday", "yesterday" } };
    for (const auto& [typed, iso] : stored)
        EXPECT_EQ(LogDate::toStored(typed), iso) << typed;
    EXPECT_EQ(LogDate::toDisplay("2026-11-15"), "15.11.2026");
    EXPECT_EQ(LogDate::toDisplay(""), "");
}

} // namespace
