// Recordsets on a real SQLite file in a temporary folder.
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/LogDate.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/RecordsetModel.h"
#include "logbook/db/SqlSource.h"
#include "logbook/db/SqlText.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

namespace {

struct Contact {
    const char* date;
    const char* call;
    const char* grid;
    const char* band;
    const char* qsl;
};

class DbRecordset : public ::testing::Test {
protected:
    void SetUp() override
    {
        path = tmp.file(QStringLiteral("backup.db"));
        DbError e;
        ASSERT_TRUE(DatabaseFile::create(path, &e)) << e.text().toStdString();
    }

    void add(const QList<Contact>& contacts)
    {
        Recordset rs(path);
        ASSERT_TRUE(rs.open(SqlText::LogList)) << rs.errorText().toStdString();
        for (const Contact& c : contacts) {
            ASSERT_TRUE(rs.addNew());
            rs.setValue(QStringLiteral("Date"), LogDate::toStored(QString::fromLatin1(c.date)));
            rs.setValue(QStringLiteral("Callsign"), QString::fromLatin1(c.call));
            rs.setValue(QStringLiteral("Grid"), QString::fromLatin1(c.grid));
            rs.setValue(QStringLiteral("Band"), QString::fromLatin1(c.band));
            rs.setValue(QStringLiteral("QSL"), QString::fromLatin1(c.qsl));
            ASSERT_TRUE(rs.update()) << rs.errorText().toStdString();
        }
    }

    QStringList column(Recordset& rs, const QString& name)
    {
        QStringList out;
        for (bool ok = rs.first(); ok && !rs.atEnd(); rs.next())
            out << rs.text(name);
        return out;
    }

    TempDir tmp;
    QString path;
};

TEST_F(DbRecordset, AppendedRowIsReadBackAndUpdatedThroughAnotherRecordset)
{
    {
        Recordset rs(path);
        ASSERT_TRUE(rs.open(SqlText::LogList));
        EXPECT_EQ(rs.recordCount(), 0);
        EXPECT_TRUE(rs.atStart());
        EXPECT_TRUE(rs.atEnd());
        ASSERT_TRUE(rs.addNew());
        EXPECT_TRUE(rs.setValue(QStringLiteral("Date"), QStringLiteral("2026-11-15")));
        EXPECT_TRUE(rs.setValue(QStringLiteral("callsign"), QStringLiteral("DL1ABC")));
        EXPECT_TRUE(rs.setValue(QStringLiteral("QRB"), 512.5f));
        EXPECT_TRUE(rs.setValue(QStringLiteral("GEdata"), QStringLiteral("Log: DL1ABC 144 kHz  15.11.2026")));
        EXPECT_TRUE(rs.setValue(QStringLiteral("Comment"), QString()));
        ASSERT_TRUE(rs.update()) << rs.errorText().toStdString();
    }
    {
        Recordset rs(path);
        ASSERT_TRUE(rs.open(SqlText::LogList));
        ASSERT_EQ(rs.recordCount(), 1);
        EXPECT_EQ(rs.text(QStringLiteral("CALLSIGN")), QStringLiteral("DL1ABC"));
        EXPECT_DOUBLE_EQ(rs.value(QStringLiteral("qrb")).toDouble(), 512.5);
        EXPECT_EQ(rs.value(QStringLiteral("Comment")).toString(), QString());
        EXPECT_FALSE(rs.value(QStringLiteral("Comment")).isNull())
            << "an empty text is stored as text, not NULL";
        EXPECT_TRUE(rs.value(QStringLiteral("Nam")).isNull());
        ASSERT_TRUE(rs.setValue(QStringLiteral("qsl"), QStringLiteral("Q")));
        ASSERT_TRUE(rs.update()) << rs.errorText().toStdString();
    }
    Recordset rs(path);
    ASSERT_TRUE(rs.open(SqlText::LogList));
    EXPECT_EQ(rs.text(QStringLiteral("QSL")), QStringLiteral("Q"));
    EXPECT_EQ(rs.text(QStringLiteral("GEdata")), QStringLiteral("Log: DL1ABC 144 kHz  15.11.2026"));
    EXPECT_EQ(rs.text(QStringLiteral("date")), QStringLiteral("2026-11-15"));
}

TEST_F(DbRecordset, BandFilterAndSortGiveNewestContactsOfOneBandFirst)
{
    add({ { "03.01.2026", "G4ABC", "IO91", "144", "Y" }, { "15.11.2025", "DL1ABC", "JO62", "144", "Y" },
        { "20.02.2026", "OK1XYZ", "JN79", "432", "Y" }, { "28.12.2025", "SM5AAA", "JO89", "144", "Y" },
        { "01.03.2024", "F6ABC", "JN18", "1296", "Y" } });
    Recordset rs(path);
    ASSERT_TRUE(rs.open(SqlText::LogList));
    ASSERT_TRUE(rs.setSort(SqlText::LogListSort));
    ASSERT_TRUE(rs.setFilter(SqlText::logListFilter(QStringLiteral("144%"))));
    EXPECT_EQ(rs.recordCount(), 3);
    EXPECT_EQ(column(rs, QStringLiteral("Callsign")),
        (QStringList { QStringLiteral("G4ABC"), QStringLiteral("SM5AAA"), QStringLiteral("DL1ABC") }));
    ASSERT_TRUE(rs.setFilter(QString()));
    EXPECT_EQ(rs.recordCount(), 5);
    EXPECT_EQ(column(rs, QStringLiteral("date")).first(), QStringLiteral("2026-02-20"));
}

TEST_F(DbRecordset, DeletedRowStaysCurrentUntilTheNextMove)
{
    add({ { "01.01.2026", "A1A", "", "144", "Y" }, { "02.01.2026", "B2B", "", "144", "Y" },
        { "03.01.2026", "C3C", "", "144", "Y" } });
    Recordset rs(path);
    ASSERT_TRUE(rs.open(SqlText::LogList));
    ASSERT_TRUE(rs.move(1));
    ASSERT_TRUE(rs.deleteCurrent()) << rs.errorText().toStdString();
    EXPECT_EQ(rs.recordCount(), 2);
    EXPECT_FALSE(rs.value(QStringLiteral("Callsign")).isValid());
    EXPECT_EQ(rs.error().number, DbErrorNumber::NoCurrentRecord);
    ASSERT_TRUE(rs.next());
    EXPECT_EQ(rs.text(QStringLiteral("Callsign")), QStringLiteral("C3C"));
    EXPECT_FALSE(rs.next());
    EXPECT_TRUE(rs.atEnd());
    Recordset again(path);
    ASSERT_TRUE(again.open(SqlText::LogList));
    EXPECT_EQ(column(again, QStringLiteral("Callsign")), (QStringList { "A1A", "C3C" }));
}

TEST_F(DbRecordset, MovingSavesPendingChangesAndCursorEdgesBehave)
{
    add({ { "01.01.2026", "A1A", "", "144", "Y" }, { "02.01.2026", "B2B", "", "144", "Y" } });
    Recordset rs(path);
    ASSERT_TRUE(rs.open(SqlText::LogList));
    EXPECT_FALSE(rs.atStart());
    EXPECT_EQ(rs.position(), 0);
    ASSERT_TRUE(rs.setValue(QStringLiteral("QSL"), QStringLiteral("S")));
    EXPECT_EQ(rs.text(QStringLiteral("qsl")), QStringLiteral("S")) << "a pending value reads back";
    ASSERT_TRUE(rs.next());
    EXPECT_FALSE(rs.isEditing());
    EXPECT_FALSE(rs.next());
    EXPECT_TRUE(rs.atEnd());
    EXPECT_TRUE(rs.last());
    EXPECT_FALSE(rs.previous() && rs.previous());
    EXPECT_TRUE(rs.atStart());
    Recordset again(path);
    ASSERT_TRUE(again.open(SqlText::LogList));
    EXPECT_EQ(again.text(QStringLiteral("QSL")), QStringLiteral("S"));
    EXPECT_EQ(again.fieldIndex(QStringLiteral("GEGRIDXY")), 33);
    EXPECT_EQ(again.fieldIndex(QStringLiteral("nosuch")), -1);
}

TEST_F(DbRecordset, ModelShowsRowsWithDisplayDatesAndDeletesThroughTheRecordset)
{
    add({ { "15.11.2025", "DL1ABC", "JO62", "144", "Y" }, { "03.01.2026", "G4ABC", "IO91", "144", "Y" },
        { "01.03.2024", "F6ABC", "JN18", "1296", "Y" } });
    Recordset rs(path);
    ASSERT_TRUE(rs.open(SqlText::LogList));
    rs.setSort(SqlText::LogListSort);
    rs.setFilter(SqlText::logListFilter(QStringLiteral("144%")));
    RecordsetModel model;
    model.setRecordset(std::move(rs));
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.columnCount(), 34);
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Date"));
    EXPECT_EQ(model.data(model.index(0, 1)).toString(), QStringLiteral("03.01.2026"));
    EXPECT_EQ(model.data(model.index(0, 1), Qt::EditRole).toString(), QStringLiteral("2026-01-03"));
    EXPECT_EQ(model.data(model.index(1, 3)).toString(), QStringLiteral("DL1ABC"));
    ASSERT_TRUE(model.removeRows(0, 1));
    EXPECT_EQ(model.rowCount(), 1);
    Recordset all(path);
    ASSERT_TRUE(all.open(SqlText::LogList));
    EXPECT_EQ(column(all, QStringLiteral("Callsign")), (QStringList { "DL1ABC", "F6ABC" }));
}

TEST(DbSqlSource, FilterAndSortApplyOverTheWholeQuery)
{
    const SqlSource source(SqlText::LogWithGrid);
    EXPECT_EQ(source.baseTable(), QStringLiteral("logtab"));
    EXPECT_EQ(source.plainStatement(QString(), QString()), SqlText::LogWithGrid);
    EXPECT_EQ(source.plainStatement(SqlText::bandFilter(QStringLiteral("144%")), QString()),
        QStringLiteral(
            "SELECT * FROM (select *  from logtab where grid <> ''order by grid) WHERE  band like '144%'"));
    EXPECT_EQ(SqlSource(SqlText::LogList).statement(QString(), SqlText::LogListSort),
        QStringLiteral(
            "SELECT * FROM (SELECT logtab.rowid AS kestrel_rowid, * FROM logtab) ORDER BY date  desc , "
            "kestrel_rowid DESC"));
    EXPECT_FALSE(SqlSource(QStringLiteral("select count(*) from logtab")).updatable());
    EXPECT_FALSE(SqlSource(QStringLiteral("select * from logtab, dxccdata")).updatable());
    EXPECT_TRUE(SqlSource(SqlText::BeaconList).updatable());
}

TEST(DbLogDate, StoredIsoAndShownDayMonthYear)
{
    EXPECT_EQ(LogDate::toStored(QStringLiteral("15.11.2026")), QStringLiteral("2026-11-15"));
    EXPECT_EQ(LogDate::toStored(QStringLiteral("5.1.2026")), QStringLiteral("2026-01-05"));
    EXPECT_EQ(LogDate::toStored(QStringLiteral("05.01.26")), QStringLiteral("2026-01-05"));
    EXPECT_EQ(LogDate::toStored(QStringLiteral("05.01.85")), QStringLiteral("1985-01-05"));
    EXPECT_EQ(LogDate::toStored(QStringLiteral("2026-11-15")), QStringLiteral("2026-11-15"));
    EXPECT_EQ(LogDate::toStored(QStringLiteral("yesterday")), QStringLiteral("yesterday"))
        << "nothing typed is lost";
    EXPECT_EQ(LogDate::toDisplay(QStringLiteral("2026-11-15")), QStringLiteral("15.11.2026"));
    EXPECT_EQ(LogDate::toDisplay(QString()), QString());
}

} // namespace
