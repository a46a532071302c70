// Several positions on one server log at once, each a real process (contact_saver) saving
// through the entry line's save: nothing lost or doubled, a dupe typed at two positions saved
// once, and every save heard by the other positions (LogChanges) within a second, also after
// the server was restarted.
#include "logbook/adif/AdifImport.h"
#include "logbook/browse/WorkedBefore.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DatabaseServer.h"
#include "logbook/db/LogChanges.h"
#include "logbook/entry/ContactSave.h"
#include "tests/logbook/PositionContact.h"
#include "tests/support/PgServer.h"
#include "tests/support/PgSession.h"
#include "tests/support/TempDir.h"
#include "tests/support/TestDatabase.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>

namespace {

// One operating position: a contact_saver process on the log.
class Position {
public:
    bool start(const QString& connection)
    {
        process_.start(QStringLiteral(CONTACT_SAVER), { connection });
        return process_.waitForStarted() && answer() == QLatin1String("ready");
    }
    ~Position()
    {
        process_.closeWriteChannel();
        if (!process_.waitForFinished(5000))
            process_.kill();
    }
    void send(const QString& command)
    {
        process_.write(command.toUtf8() + '\n');
        process_.waitForBytesWritten(1000); // now, not at the next turn of the event loop
    }
    QString answer(int timeoutMs = 10000)
    {
        while (!process_.canReadLine()) {
            if (!process_.waitForReadyRead(timeoutMs))
                return QStringLiteral("(no answer) ") + QString::fromUtf8(process_.readAllStandardError());
        }
        return QString::fromUtf8(process_.readLine()).trimmed();
    }

private:
    QProcess process_;
};

QVariant valueOn(const QString& connection, const QString& sql)
{
    PgSession db(connection);
    return db.value(sql);
}

// On the test run's PostgreSQL server (the .pg cases); without one there is nothing to share.
class LogConcurrency : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (TestDatabase::fixtureDir().isEmpty())
            GTEST_SKIP() << "positions share a log on a server only: see the .pg cases";
        uri = TestDatabase::connectionFor(QString());
        ASSERT_FALSE(DatabaseServer::prepare(uri).isError());
    }

    QVariant value(const QString& sql) const { return valueOn(uri, sql); }

    QString uri;
};

// Waits until the changes of the log are heard.
bool listening(LogChanges& changes)
{
    return QTest::qWaitFor([&] { return changes.isListening(); }, 10000);
}

TEST_F(LogConcurrency, ThreePositionsSaving2000EachStoreEveryContactOnce)
{
    Position positions[3];
    for (Position& p : positions)
        ASSERT_TRUE(p.start(uri));
    const char* prefixes[] = { "A", "B", "C" };
    for (int i = 0; i < 3; ++i)
        positions[i].send(QStringLiteral("many %1 2000").arg(QLatin1String(prefixes[i])));
    for (Position& p : positions)
        EXPECT_EQ(p.answer(120000), "many 2000 0 0");
    EXPECT_EQ(value("SELECT count(*) FROM logtab").toInt(), 6000);
    EXPECT_EQ(value("SELECT count(DISTINCT callsign) FROM logtab").toInt(), 6000);
    // Every one of them: the calls A0..A1999, B0.., C0.. and nothing else.
    EXPECT_EQ(
        value("SELECT count(*) FROM logtab WHERE callsign ~ '^[ABC](0|[1-9][0-9]{0,2}|1[0-9]{3})$'").toInt(),
        6000);
}

TEST_F(LogConcurrency, DupeTypedAtTwoPositionsAtOnceIsSavedOnce)
{
    Position a, b;
    ASSERT_TRUE(a.start(uri));
    ASSERT_TRUE(b.start(uri));
    // The start barrier is at the server: the contact's lock, held here until both saves wait for it.
    PgSession gate(uri);
    const QString waiting
        = QStringLiteral("SELECT count(*) FROM pg_locks WHERE locktype = 'advisory' AND NOT granted");
    int savedByA = 0;
    for (int round = 0; round < 50; ++round) {
        const QString call = QStringLiteral("DL%1X").arg(round);
        const QString key = AdifImport::duplicateKey(call, "2026-11-15", "12:34", "144", "CW");
        ASSERT_TRUE(gate.exec(QStringLiteral("SELECT pg_advisory_lock(hashtext('%1'))").arg(key)));
        a.send(QStringLiteral("same ") + call);
        b.send(QStringLiteral("same ") + call);
        ASSERT_TRUE(QTest::qWaitFor([&] { return gate.value(waiting).toInt() == 2; }, 5000)) << round;
        ASSERT_TRUE(gate.exec(QStringLiteral("SELECT pg_advisory_unlock_all()")));
        QStringList answers { a.answer(), b.answer() };
        savedByA += answers[0].startsWith(QLatin1String("saved"));
        std::sort(answers.begin(), answers.end());
        ASSERT_TRUE(answers[0].startsWith(QLatin1String("refused "))) << answers[0].toStdString();
        EXPECT_EQ(answers[0],
            QStringLiteral(
                "refused %1 on 144 at 15.11.2026 12:34 (CW) is already in the log: saved at another "
                "position or earlier here, so it was not saved again.")
                .arg(call));
        ASSERT_TRUE(answers[1].startsWith(QLatin1String("saved "))) << answers[1].toStdString();
    }
    EXPECT_EQ(value("SELECT count(*) FROM logtab").toInt(), 50);
    EXPECT_EQ(value("SELECT count(DISTINCT callsign) FROM logtab").toInt(), 50);
    std::cout << "position A saved " << savedByA << " of the 50 first" << std::endl;
}

TEST_F(LogConcurrency, KeyIsCallWithoutCaseDateMinuteBandAndMode)
{
    ASSERT_FALSE(
        ContactSave::save(uri, ContactSave::fields(positionContact("OH6ABC"), MapPosition())).isError());
    struct Case {
        const char* what;
        const char* call;
        const char* gmt;
        const char* band;
        const char* mode;
        bool saved;
    } cases[] = {
        { "the same again", "OH6ABC", "12:34", "144", "CW", false },
        { "call in lower case", "oh6abc", "12:34", "144", "CW", false },
        { "mode in lower case", "OH6ABC", "12:34", "144", "cw", false },
        { "another minute", "OH6ABC", "12:35", "144", "CW", true },
        { "another band", "OH6ABC", "12:34", "432", "CW", true },
        { "another mode", "OH6ABC", "12:34", "144", "SSB", true },
        { "another call", "OH6AB", "12:34", "144", "CW", true },
    };
    for (const Case& c : cases) {
        EntryLine l = positionContact(QLatin1String(c.call));
        l.GM = QLatin1String(c.gmt);
        l.Ba = QLatin1String(c.band);
        l.mo = QLatin1String(c.mode);
        const DbError e = ContactSave::save(uri, ContactSave::fields(l, MapPosition()));
        EXPECT_EQ(e.number, c.saved ? 0 : DbErrorNumber::AlreadyLogged) << c.what;
    }
    EXPECT_EQ(value("SELECT count(*) FROM logtab").toInt(), 5);
}

TEST(LogChangesFile, OnAFileTheSaveStaysWithoutCheckAndNothingIsHeard)
{
    TempDir tmp;
    const QString file = tmp.file("backup.db");
    ASSERT_TRUE(DatabaseFile::create(file));
    for (int i = 0; i < 2; ++i)
        EXPECT_FALSE(
            ContactSave::save(file, ContactSave::fields(positionContact("OH6ABC"), MapPosition())).isError());
    LogChanges changes;
    changes.watch(file);
    QTest::qWait(100);
    EXPECT_FALSE(changes.isListening());
}

TEST_F(LogConcurrency, EveryChangeIsHeardWithItsOpAndRow)
{
    LogChanges changes;
    QSignalSpy heard(&changes, &LogChanges::changed);
    changes.watch(uri);
    ASSERT_TRUE(listening(changes));
    qint64 id = 0;
    ASSERT_FALSE(
        ContactSave::save(uri, ContactSave::fields(positionContact("OH6ABC"), MapPosition()), &id).isError());
    PgSession db(uri);
    ASSERT_TRUE(db.exec(QStringLiteral("UPDATE logtab SET qsl = 'Y' WHERE id = %1").arg(id)));
    ASSERT_TRUE(db.exec(QStringLiteral("DELETE FROM logtab WHERE id = %1").arg(id)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return heard.size() >= 3; }, 2000));
    const QList<QVariantList> expected = { { "INSERT", id }, { "UPDATE", id }, { "DELETE", id } };
    EXPECT_EQ(QList<QVariantList>(heard.begin(), heard.end()), expected);
}

TEST_F(LogConcurrency, PrepareGivesAnOlderServerLogTheNoticeOfChanges)
{
    const QString trigger = QStringLiteral("SELECT count(*) FROM pg_trigger WHERE tgname = "
                                           "'kestrel_log_changed' AND tgrelid = 'logtab'::regclass");
    ASSERT_EQ(value(trigger).toInt(), 1);
    {
        PgSession db(uri);
        ASSERT_TRUE(db.exec(QStringLiteral("DROP TRIGGER kestrel_log_changed ON logtab")));
    }
    ASSERT_EQ(value(trigger).toInt(), 0);
    EXPECT_FALSE(DatabaseServer::prepare(uri).isError());
    EXPECT_EQ(value(trigger).toInt(), 1);
    EXPECT_FALSE(DatabaseServer::prepare(uri).isError());
    EXPECT_EQ(value(trigger).toInt(), 1);
}

// Latency from the command to the other process until the row is in this process's
// worked-before list, beside a bare NOTIFY sent the same way (the reference).
TEST_F(LogConcurrency, ContactSavedAtOnePositionReachesAnotherWithinASecond)
{
    Position other;
    ASSERT_TRUE(other.start(uri));
    WorkedBefore worked;
    ASSERT_TRUE(worked.load(uri));
    LogChanges changes;
    QElapsedTimer clock;
    QString expected; // the call of the save under way, or "BARE"
    qint64 arrived = -1; // microseconds from the command to the row in the list
    QObject::connect(&changes, &LogChanges::changed, &changes, [&](const QString& op, qint64 id) {
        if (op == QLatin1String("INSERT"))
            worked.addRows(uri, { id });
        if (op == expected || !worked.check(expected, QStringLiteral("144")).earlier.isEmpty())
            arrived = clock.nsecsElapsed() / 1000;
    });
    changes.watch(uri);
    ASSERT_TRUE(listening(changes));
    QList<qint64> saves, bare;
    // Woken by the notice itself (QTest::qWaitFor would look only every 10 ms).
    auto waitArrival = [&] {
        QElapsedTimer waited;
        waited.start();
        while (arrived < 0 && waited.elapsed() < 2000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        return arrived >= 0;
    };
    auto measure = [&](const QString& command, const QString& awaited, QList<qint64>& into) {
        expected = awaited;
        arrived = -1;
        clock.start();
        other.send(command);
        if (waitArrival())
            into << arrived;
        return other.answer();
    };
    // The references: a bare NOTIFY from the other process, and from a second connection here.
    QList<qint64> local;
    PgSession here(uri);
    for (int i = 0; i < 20; ++i) {
        const QString call = QStringLiteral("OH%1AB").arg(i);
        EXPECT_TRUE(measure(QStringLiteral("same ") + call, call, saves).startsWith(QLatin1String("saved")));
        EXPECT_EQ(measure(QStringLiteral("notify BARE %1").arg(i), QStringLiteral("BARE"), bare), "notified");
        expected = QStringLiteral("HERE");
        arrived = -1;
        clock.start();
        here.exec(QStringLiteral("NOTIFY kestrel_log, 'HERE %1'").arg(i));
        if (waitArrival())
            local << arrived;
    }
    ASSERT_EQ(saves.size(), 20);
    ASSERT_EQ(bare.size(), 20);
    ASSERT_EQ(local.size(), 20);
    for (QList<qint64>* l : { &saves, &bare, &local })
        std::sort(l->begin(), l->end());
    std::cout << "microseconds, median / worst of 20: save at the other position heard here " << saves[10]
              << " / " << saves.last() << "; bare NOTIFY from the other process " << bare[10] << " / "
              << bare.last() << "; bare NOTIFY from a second connection here " << local[10] << " / "
              << local.last() << std::endl;
    EXPECT_LT(saves.last(), 1000000);
    EXPECT_EQ(worked.size(), 20);
}

// A server of its own, to be stopped and started again.
TEST(LogChangesRestart, AfterAServerRestartItListensAgainAndAsksForResync)
{
    qunsetenv("PGPASSWORD");
    PgServer server;
    QString error;
    ASSERT_TRUE(server.start(&error)) << error.toStdString();
    qputenv("PGPASSFILE", server.passFile().toLocal8Bit());
    const QString uri = server.createDatabase(QStringLiteral("club"), &error);
    ASSERT_FALSE(uri.isEmpty()) << error.toStdString();
    ASSERT_FALSE(DatabaseServer::prepare(uri).isError());

    LogChanges changes;
    QSignalSpy resync(&changes, &LogChanges::resync);
    QSignalSpy heard(&changes, &LogChanges::changed);
    changes.watch(uri);
    ASSERT_TRUE(listening(changes));
    EXPECT_EQ(resync.size(), 0); // the first LISTEN comes before the window's reads
    ASSERT_TRUE(server.stop());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !changes.isListening(); }, 5000));
    QTest::qWait(1500); // a few attempts fail while the server is down
    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(server.start());
    ASSERT_TRUE(resync.wait(LogChanges::MaxRetryMs + 5000));
    std::cout << "listening again " << clock.elapsed() << " ms after the server was back" << std::endl;
    EXPECT_LE(clock.elapsed(), LogChanges::MaxRetryMs + 1000);
    EXPECT_EQ(resync.size(), 1);
    // The first save after the restart goes through (no stale kept connection) and is heard.
    qint64 id = 0;
    ASSERT_FALSE(
        ContactSave::save(uri, ContactSave::fields(positionContact("OH6ABC"), MapPosition()), &id).isError());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !heard.isEmpty(); }, 2000));
    EXPECT_EQ(heard.last(), QVariantList({ "INSERT", id }));
}

} // namespace
