// Reading a print run from a real log file: the letter each selection moves on to, stored per
// contact, and what happens when the database refuses. Callsign order, the card forms and the
// arrays' bound are shown by the print runs.
#include "qsl/QslRunReader.h"
#include "tests/qsl/QslTestSupport.h"

class QslRunReading : public QslLogTest { };

TEST_F(QslRunReading, EachSelectionLetterMovesToItsOwnNextLetter)
{
    addContacts(db,
        { { "01.01.2026", "10:00", "DL1AA", "144", "S" }, { "01.01.2026", "10:00", "DL1BB", "144", "Y" },
            { "01.01.2026", "10:00", "DB0XY", "10368", "B" }, { "01.01.2026", "10:00", "DL1CC", "144", "X" },
            { "01.01.2026", "10:00", "DL1DD", "144", "t" } });
    // Peeking reads without changing a letter.
    EXPECT_EQ(QslRunReader::read(db, "T", QslRunReader::Mode::Peek).contacts->count(), 1);
    EXPECT_EQ(qslLetters(db), "B S Y X t"); // DB0XY DL1AA DL1BB DL1CC DL1DD
    for (const char* letter : { "S", "Y", "B", "X", "T" })
        EXPECT_EQ(QslRunReader::read(db, QString::fromLatin1(letter)).contacts->count(), 1) << letter;
    EXPECT_EQ(qslLetters(db), "N D N X Q");
    const QslRunRead again = QslRunReader::read(db, "T");
    EXPECT_FALSE(again.failed);
    EXPECT_FALSE(again.hasRows);
}

TEST_F(QslRunReading, DatabaseErrorsAreReportedNotThrown)
{
    const QslRunRead missing = QslRunReader::read(tmp.file("nothere.db"), "T");
    EXPECT_TRUE(missing.failed);
    EXPECT_FALSE(missing.errorDetail.isEmpty());
    EXPECT_EQ(missing.contacts->count(), 0);
    tmp.write("junk.db", QByteArray(4096, 'x'));
    EXPECT_TRUE(QslRunReader::read(tmp.file("junk.db"), "T").failed);
    // A quote in the letter cannot break the statement.
    const QslRunRead quote = QslRunReader::read(db, "'");
    EXPECT_FALSE(quote.failed) << quote.errorDetail.toStdString();
}

TEST_F(QslRunReading, AFailingUpdateStopsTheRunAndKeepsWhatWasMarked)
{
    addContacts(db,
        { { "01.01.2026", "10:00", "DL1AA", "144", "T" }, { "01.01.2026", "11:00", "DL2BB", "144", "T" } });
    // A trigger refuses the second contact's change, as a locked or damaged row would.
    DbConnection c(db);
    ASSERT_TRUE(c.exec("CREATE TRIGGER refuse BEFORE UPDATE ON logtab WHEN old.Callsign = 'DL2BB' "
                       "BEGIN SELECT RAISE(ABORT, 'row is locked'); END"))
        << c.error().text().toStdString();
    const QslRunRead r = QslRunReader::read(db, "T");
    EXPECT_TRUE(r.failed);
    EXPECT_TRUE(r.errorDetail.contains("locked")) << r.errorDetail.toStdString();
    EXPECT_EQ(r.contacts->count(), 1);
    ASSERT_EQ(r.marked.size(), 1);
    EXPECT_EQ(qslLetters(db), "Q T");
}
