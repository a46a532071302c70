// Reading a print run from a real log file: selection by letter, callsign order, the letter
// changes stored per contact, the arrays' bound and database errors.
#include "qsl/QslRunReader.h"
#include "tests/qsl/QslTestSupport.h"
#include "tests/support/TempDir.h"

#include <QFile>

namespace {

class QslRunReading : public ::testing::Test {
protected:
    void SetUp() override { makeLog(db); }
    TempDir tmp;
    QString db = tmp.file(QStringLiteral("backup.db"));
};

QStringList calls(const QslRunRead& r)
{
    QStringList out;
    for (int i = 0; i < r.contacts->count(); ++i)
        out << r.contacts->callsign[static_cast<std::size_t>(i)];
    return out;
}

} // namespace

TEST_F(QslRunReading, ThanksRunReadsInCallsignOrderAndMarksEachContactQ)
{
    addContacts(db,
        { { "15.11.2026", "18:20:05", "OK1XYZ", "144", "T" },
            { "14.11.2026", "09:30", "DL1ABC", "14200", "T" }, { "13.11.2026", "10:00", "G4ABC", "432", "Y" },
            { "12.11.2026", "11:00", "DF9ZZ", "1296", "t" }, { "11.11.2026", "12:00", "AA1AA", "50", "Q" } });
    const QslRunRead r = QslRunReader::read(db, QStringLiteral("T"));
    ASSERT_FALSE(r.failed) << r.errorDetail.toStdString();
    EXPECT_TRUE(r.hasRows);
    EXPECT_EQ(calls(r).join(' ').toStdString(), "DF9ZZ DL1ABC OK1XYZ");
    EXPECT_EQ(r.marked.size(), 3);
    EXPECT_EQ(r.marked[0].before.toStdString(), "t");
    EXPECT_EQ(r.marked[0].after.toStdString(), "Q");

    // The arrays hold the card forms of the fields.
    EXPECT_EQ(r.contacts->date[2].toStdString(), " 15.11.2026");
    EXPECT_EQ(r.contacts->time[2].toStdString(), "  18:20 ");
    EXPECT_EQ(r.contacts->band[1].toStdString(), "    14,200");
    EXPECT_EQ(r.contacts->qrb[1].toStdString(), "512");
    EXPECT_EQ(r.contacts->qtf[1].toStdString(), "87");

    const auto letters = qslLetters(db);
    EXPECT_EQ(letters.value("OK1XYZ 15.11.2026 18:20:05").toStdString(), "Q");
    EXPECT_EQ(letters.value("DL1ABC 14.11.2026 09:30").toStdString(), "Q");
    EXPECT_EQ(letters.value("DF9ZZ 12.11.2026 11:00").toStdString(), "Q");
    EXPECT_EQ(letters.value("G4ABC 13.11.2026 10:00").toStdString(), "Y");
    EXPECT_EQ(letters.value("AA1AA 11.11.2026 12:00").toStdString(), "Q");

    // A second run finds nothing left.
    const QslRunRead again = QslRunReader::read(db, QStringLiteral("T"));
    EXPECT_FALSE(again.failed);
    EXPECT_FALSE(again.hasRows);
    EXPECT_EQ(again.contacts->count(), 0);
}

TEST_F(QslRunReading, EachSelectionLetterMovesToItsOwnNextLetter)
{
    addContacts(db,
        { { "01.01.2026", "10:00", "DL1AA", "144", "S" }, { "01.01.2026", "10:00", "DL1BB", "144", "Y" },
            { "01.01.2026", "10:00", "DB0XY", "10368", "B" },
            { "01.01.2026", "10:00", "DL1CC", "144", "X" } });
    for (const char* letter : { "S", "Y", "B", "X" })
        EXPECT_EQ(QslRunReader::read(db, QString::fromLatin1(letter)).contacts->count(), 1) << letter;
    const auto letters = qslLetters(db);
    EXPECT_EQ(letters.value("DL1AA 01.01.2026 10:00").toStdString(), "D");
    EXPECT_EQ(letters.value("DL1BB 01.01.2026 10:00").toStdString(), "N");
    EXPECT_EQ(letters.value("DB0XY 01.01.2026 10:00").toStdString(), "N");
    EXPECT_EQ(letters.value("DL1CC 01.01.2026 10:00").toStdString(), "X");
}

TEST_F(QslRunReading, PeekReadsWithoutChangingAnyLetter)
{
    addContacts(db, { { "01.01.2026", "10:00", "DL1AA", "144", "T" } });
    const QslRunRead r = QslRunReader::read(db, QStringLiteral("T"), QslRunReader::Mode::Peek);
    EXPECT_EQ(r.contacts->count(), 1);
    EXPECT_TRUE(r.marked.isEmpty());
    EXPECT_EQ(qslLetters(db).value("DL1AA 01.01.2026 10:00").toStdString(), "T");
}

TEST_F(QslRunReading, DatabaseErrorsAreReportedNotThrown)
{
    const QslRunRead missing
        = QslRunReader::read(tmp.file(QStringLiteral("nothere.db")), QStringLiteral("T"));
    EXPECT_TRUE(missing.failed);
    EXPECT_FALSE(missing.errorDetail.isEmpty());
    EXPECT_EQ(missing.contacts->count(), 0);

    tmp.write(QStringLiteral("junk.db"), QByteArray(4096, 'x'));
    EXPECT_TRUE(QslRunReader::read(tmp.file(QStringLiteral("junk.db")), QStringLiteral("T")).failed);

    // A quote in the letter cannot break the statement.
    addContacts(db, { { "01.01.2026", "10:00", "DL1AA", "144", "T" } });
    const QslRunRead quote = QslRunReader::read(db, QStringLiteral("'"));
    EXPECT_FALSE(quote.failed) << quote.errorDetail.toStdString();
    EXPECT_FALSE(quote.hasRows);
}

TEST_F(QslRunReading, AFailingUpdateStopsTheRunAndKeepsWhatWasMarked)
{
    addContacts(db,
        { { "01.01.2026", "10:00", "DL1AA", "144", "T" }, { "01.01.2026", "11:00", "DL2BB", "144", "T" } });
    // A trigger refuses the second contact's change, as a locked or damaged row would.
    DbConnection c(db);
    ASSERT_TRUE(
        c.exec(QStringLiteral("CREATE TRIGGER refuse BEFORE UPDATE ON logtab WHEN old.Callsign = 'DL2BB' "
                              "BEGIN SELECT RAISE(ABORT, 'row is locked'); END")))
        << c.error().text().toStdString();
    const QslRunRead r = QslRunReader::read(db, QStringLiteral("T"));
    EXPECT_TRUE(r.failed);
    EXPECT_TRUE(r.errorDetail.contains(QStringLiteral("locked"))) << r.errorDetail.toStdString();
    EXPECT_EQ(calls(r).join(' ').toStdString(), "DL1AA");
    ASSERT_EQ(r.marked.size(), 1);
    const auto letters = qslLetters(db);
    EXPECT_EQ(letters.value("DL1AA 01.01.2026 10:00").toStdString(), "Q");
    EXPECT_EQ(letters.value("DL2BB 01.01.2026 11:00").toStdString(), "T");
}
