// Recordsets on a real SQLite file in a temporary folder.
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/LogDate.h"
#include "logbook/db/Recordset.h"
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

} // namespace
