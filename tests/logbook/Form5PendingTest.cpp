#include "ClubServer.h"
#include "EntryTestDb.h"
#include "logbook/entry/PendingContacts.h"
#include "logbook/entry/PendingRetry.h"
#include "tests/support/PgSession.h"
#include "ui/logbook/Form5.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// The logbook window on a club server that goes away while a contact is saved.
class Form5PendingTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        // The journal lives in the user's data folder: here, a temporary one.
        home_ = qgetenv("HOME");
        qputenv("HOME", tmp.path().toLocal8Bit());
        QString error;
        uri = startClubLog(server, &error);
        ASSERT_FALSE(uri.isEmpty()) << error.toStdString();
        db.station.dbConnection = uri;
        serverName = QStringLiteral("127.0.0.1:%1/club").arg(server.port());
    }
    void open()
    {
        form = std::make_unique<Form5>(db.station);
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(form.get()));
    }
    void TearDown() override
    {
        form.reset();
        qputenv("HOME", home_);
    }

    QLineEdit* box(const char* name) const { return form->findChild<QLineEdit*>(QLatin1String(name)); }
    void type(const QStringList& texts) const
    {
        const char* names[] = { "DA", "GM", "Ca", "Gr", "Rss", "Rr", "Ba", "mo" };
        for (int i = 0; i < texts.size(); ++i)
            box(names[i])->setText(texts[i]);
    }
    void save() const { QTest::mouseClick(form->findChild<QPushButton*>("Save"), Qt::LeftButton); }
    int logRows() const { return PgSession(uri).value("SELECT count(*) FROM logtab").toInt(); }

    TempDir tmp;
    QByteArray home_;
    PgServer server;
    QString uri;
    QString serverName;
    EntryTestDb db;
    std::unique_ptr<Form5> form;
};

TEST_F(Form5PendingTest, EntryLineKeepsTheContactWhileTheServerIsAwayAndSavesItWhenBack)
{
    open();
    const QString journal = PendingContacts::defaultPath();
    ASSERT_TRUE(journal.startsWith(tmp.path())) << journal.toStdString();
    ASSERT_TRUE(server.stop());

    type({ "23.11.2026", "1412", "OK1XYZ", "JN79", "599", "579", "144", "CW" });
    save();
    EXPECT_EQ(box("Ca")->text(), "OK1XYZ");
    EXPECT_EQ(box("Rr")->text(), "579");
    const QString away
        = QStringLiteral("The logbook server %1 cannot be reached. The contact stays in the entry "
                         "line and is kept in %2; it is saved as soon as the server is back.")
              .arg(serverName, journal);
    EXPECT_EQ(db.prompts.shown, QStringList { away });
    ASSERT_EQ(PendingContacts(journal).entries().size(), 1);

    // Corrected and saved again while still away: the same kept contact, no second message.
    box("Rr")->setText("589");
    save();
    EXPECT_EQ(db.prompts.shown, QStringList { away });
    const QList<PendingContact> kept = PendingContacts(journal).entries();
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(kept[0].fields[5].value.toString(), "589");
    EXPECT_EQ(box("Ca")->text(), "OK1XYZ");

    QString error;
    ASSERT_TRUE(server.start(&error)) << error.toStdString();
    EXPECT_TRUE(QTest::qWaitFor([&] { return db.prompts.shown.size() == 2; }, 20000));
    EXPECT_EQ(db.prompts.shown.value(1),
        QStringLiteral(
            "The contact kept in %1 while the logbook server %2 could not be reached is now saved.")
            .arg(journal, serverName));
    EXPECT_EQ(box("Ca")->text(), "");
    EXPECT_EQ(logRows(), 1);
    EXPECT_EQ(PgSession(uri).value("SELECT rstr FROM logtab").toString(), "589");
    EXPECT_TRUE(PendingContacts(journal).entries().isEmpty());
}

TEST_F(Form5PendingTest, ALineTypedOnMeanwhileStaysWhenTheKeptContactIsSaved)
{
    open();
    ASSERT_TRUE(server.stop());
    type({ "23.11.2026", "1412", "OK1XYZ", "JN79", "599", "579", "144", "CW" });
    save();
    type({ "23.11.2026", "1413", "SP9ABC", "KN09", "599", "599", "144", "CW" });
    ASSERT_TRUE(server.start());
    EXPECT_TRUE(QTest::qWaitFor([&] { return db.prompts.shown.size() == 2; }, 20000));
    EXPECT_EQ(box("Ca")->text(), "SP9ABC");
    EXPECT_EQ(logRows(), 1);
}

TEST_F(Form5PendingTest, WhatAnEarlierRunKeptIsSavedAtStartUp)
{
    const QString journal = PendingContacts::defaultPath();
    EntryLine l;
    l.DA = "23.11.2026";
    l.GM = "0815";
    l.Ca = "G4ABC";
    l.Ba = "144";
    l.mo = "SSB";
    for (const QString& connection : { uri, QStringLiteral("another.db") })
        ASSERT_FALSE(PendingContacts(journal).append(connection, ContactSave::fields(l, {})).isEmpty());
    open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !db.prompts.shown.isEmpty(); }, 10000));
    EXPECT_EQ(db.prompts.shown,
        QStringList { QStringLiteral(
            "The contact kept in %1 while the logbook server %2 could not be reached is now saved.")
                          .arg(journal, serverName) });
    EXPECT_EQ(PgSession(uri).value("SELECT Callsign FROM logtab").toString(), "G4ABC");
    EXPECT_EQ(PendingContacts(journal).entries().size(), 1); // another log's contact waits for it
}

TEST_F(Form5PendingTest, WhatAnEarlierRunKeptWaitsWithOneMessageWhileTheServerIsAway)
{
    const QString journal = PendingContacts::defaultPath();
    for (const char* call : { "G4ABC", "G4ABD" }) {
        EntryLine l;
        l.Ca = call;
        ASSERT_FALSE(PendingContacts(journal).append(uri, ContactSave::fields(l, {})).isEmpty());
    }
    ASSERT_TRUE(server.stop());
    open(); // the window's own opening reports the log it cannot read ("Error 3151 ...")
    const auto kept = [&] { return db.prompts.shown.filter(QStringLiteral("contacts kept")); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return !kept().isEmpty(); }, 10000));
    QTest::qWait(2 * PendingRetry::IntervalMs + 500); // two more tries: no more messages
    EXPECT_EQ(kept(),
        QStringList {
            QStringLiteral("The logbook server %1 cannot be reached. 2 contacts kept in %2 are saved as "
                           "soon as the server is back.")
                .arg(serverName, journal) });
    EXPECT_EQ(PendingContacts(journal).entries().size(), 2);
}

} // namespace
