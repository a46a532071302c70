#include "logbook/entry/PendingContacts.h"
#include "ClubServer.h"
#include "logbook/entry/ContactSave.h"
#include "logbook/entry/PendingRetry.h"
#include "tests/support/PgSession.h"
#include "tests/support/TempDir.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <atomic>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

QList<SavedField> contactFields(int i)
{
    EntryLine l;
    l.DA = QStringLiteral("23.11.2026");
    l.GM = QStringLiteral("%1%2")
               .arg(12 + i / 60, 2, 10, QLatin1Char('0'))
               .arg(i % 60, 2, 10, QLatin1Char('0'));
    l.Ca = QStringLiteral("DL%1ABC").arg(i);
    l.Gr = QStringLiteral("JO62QM");
    l.Rss = QStringLiteral("599");
    l.Rr = QStringLiteral("59%1").arg(i % 10);
    l.Ba = QStringLiteral("144");
    l.mo = QStringLiteral("CW");
    l.Ns = QString::number(i + 1);
    return ContactSave::fields(l, { QStringLiteral("13.4 52.5"), 310.5f, 47.25f });
}

QString typed(const QVariant& v)
{
    return QStringLiteral("%1:%2:%3")
        .arg(QString::fromLatin1(v.typeName()), v.isNull() ? "null" : "", v.toString());
}

TEST(PendingContactsTest, FieldsComeBackWithTheirTypes)
{
    TempDir tmp;
    PendingContacts journal(tmp.file("pending.jsonl"));
    struct Case {
        QVariant value;
        QString back;
    };
    const Case cases[] = {
        { QString(), "QString::" }, // an empty box: saved as '', so kept as ''
        { QStringLiteral(""), "QString::" },
        { QStringLiteral("599"), "QString::599" }, // a report that looks like a number stays text
        { QStringLiteral("O'NEILL \"x\" \u00e9\n"), "QString::O'NEILL \"x\" \u00e9\n" },
        { 310.5, "double::310.5" },
        { ContactSave::storedNumber(47.3f), "double::47.3" },
        { 0.0, "double::0" },
        { QVariant(7), "qlonglong::7" },
        { QVariant(qint64(1) << 40), "qlonglong::1099511627776" },
        { QVariant(), ":null:" }, // NULL stays NULL
        { QVariant(QMetaType::fromType<double>()), ":null:" },
    };
    QList<SavedField> fields;
    for (int i = 0; i < int(std::size(cases)); ++i)
        fields.append({ QStringLiteral("c%1").arg(i), cases[i].value });
    const QString id = journal.append(QStringLiteral("postgresql://k@127.0.0.1:5/log"), fields);
    ASSERT_FALSE(id.isEmpty());
    const QList<PendingContact> back = journal.entries();
    ASSERT_EQ(back.size(), 1);
    EXPECT_EQ(back[0].id, id);
    EXPECT_EQ(back[0].connection, "postgresql://k@127.0.0.1:5/log");
    EXPECT_LE(back[0].kept.secsTo(QDateTime::currentDateTimeUtc()), 5);
    ASSERT_EQ(back[0].fields.size(), fields.size());
    for (int i = 0; i < int(std::size(cases)); ++i) {
        EXPECT_EQ(back[0].fields[i].column, fields[i].column);
        EXPECT_EQ(typed(back[0].fields[i].value).toStdString(), cases[i].back.toStdString()) << i;
    }
    // Exactly one line, ended.
    EXPECT_EQ(tmp.read("pending.jsonl").count('\n'), 1);
}

TEST(PendingContactsTest, DamagedLinesAreReportedAndSetAsideNeverDropped)
{
    TempDir tmp;
    const QString path = tmp.file("pending.jsonl");
    PendingContacts journal(path);
    const QString first = journal.append(QStringLiteral("log.db"), contactFields(1));
    const QString second = journal.append(QStringLiteral("log.db"), contactFields(2));
    QByteArray bytes = tmp.read("pending.jsonl");
    const QByteArray cut = bytes.left(20); // a write cut short by a crash, inside a text
    bytes.insert(bytes.indexOf('\n') + 1, "not json at all\n{\"id\":\"x\"}\n");
    bytes += cut; // no line end: the next append starts a line of its own
    tmp.write("pending.jsonl", bytes);
    const QString third = journal.append(QStringLiteral("log.db"), contactFields(3));

    QStringList damaged;
    const QList<PendingContact> left = journal.entries(&damaged);
    QStringList ids;
    for (const PendingContact& p : left)
        ids << p.id;
    EXPECT_EQ(ids, QStringList({ first, second, third }));
    const QString aside = path + ".damaged";
    EXPECT_EQ(damaged.join('\n').toStdString(),
        QStringList(
            { QStringLiteral("Line 2 of %1 could not be read (illegal value); it was moved to %2.")
                    .arg(path, aside),
                QStringLiteral(
                    "Line 3 of %1 could not be read (no id, connection or fields); it was moved to %2.")
                    .arg(path, aside),
                QStringLiteral("Line 5 of %1 could not be read (unterminated string); it was moved to %2.")
                    .arg(path, aside) })
            .join('\n')
            .toStdString());
    EXPECT_EQ(tmp.read("pending.jsonl.damaged"), "not json at all\n{\"id\":\"x\"}\n" + cut + "\n");
    // Set aside once: the journal now holds the readable lines only.
    damaged.clear();
    EXPECT_EQ(journal.entries(&damaged).size(), 3);
    EXPECT_TRUE(damaged.isEmpty());
    EXPECT_EQ(tmp.read("pending.jsonl").count('\n'), 3);
}

TEST(PendingContactsTest, SameContactComparesTheKeyOnly)
{
    QList<SavedField> a = contactFields(5);
    QList<SavedField> b = a;
    b[2].value = b[2].value.toString().toLower(); // Callsign in another case
    b[4].value = QStringLiteral("579"); // another report
    EXPECT_TRUE(PendingContacts::sameContact(a, b));
    for (const char* column : { "Date", "GMT", "Band", "mode" }) {
        QList<SavedField> c = a;
        for (SavedField& f : c)
            if (f.column == QLatin1String(column))
                f.value = f.value.toString() + "0";
        EXPECT_FALSE(PendingContacts::sameContact(a, c)) << column;
    }
}

// A server machine that went away mid-connection: TCP is accepted but nothing ever answers, so
// libpq waits out its 3 s connect timeout. The try runs beside the window's event loop.
TEST(PendingRetryTest, ATryOnAServerThatNeverAnswersDoesNotHoldUpTheWindow)
{
    const int silent = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    ASSERT_EQ(::bind(silent, reinterpret_cast<sockaddr*>(&address), size), 0);
    ASSERT_EQ(::listen(silent, 8), 0); // the kernel completes handshakes; no one ever reads
    ASSERT_EQ(::getsockname(silent, reinterpret_cast<sockaddr*>(&address), &size), 0);
    const QString uri = QStringLiteral("postgresql://kestrel@127.0.0.1:%1/club").arg(ntohs(address.sin_port));

    TempDir tmp;
    PendingContacts journal(tmp.file("pending.jsonl"));
    ASSERT_FALSE(journal.append(uri, contactFields(1)).isEmpty());
    PendingRetry retry(journal.path(), uri);
    std::optional<PendingFlush> result;
    QObject::connect(&retry, &PendingRetry::flushed, [&](const PendingFlush& r) { result = r; });
    QElapsedTimer clock;
    QElapsedTimer sinceTick;
    qint64 longestGap = 0;
    QTimer tick; // the window's own work
    QObject::connect(
        &tick, &QTimer::timeout, [&] { longestGap = std::max(longestGap, sinceTick.restart()); });
    tick.start(20);
    clock.start();
    sinceTick.start();
    retry.retryNow();
    const qint64 returnedAfter = clock.elapsed();
    EXPECT_TRUE(QTest::qWaitFor([&] { return result.has_value(); }, 20000));
    const qint64 tryTook = clock.elapsed();
    ::close(silent);

    ASSERT_TRUE(result);
    EXPECT_EQ(result->error.number, DbErrorNumber::ServerGone) << result->error.text().toStdString();
    EXPECT_EQ(result->left, 1);
    EXPECT_TRUE(retry.waiting());
    EXPECT_GE(tryTook, 2500); // the try really waited for the server...
    EXPECT_LT(returnedAfter, 500); // ...and the window did not
    EXPECT_LT(longestGap, 1000);
    std::cout << "try on a silent server took " << tryTook << " ms; retryNow returned after " << returnedAfter
              << " ms, the longest gap between 20 ms ticks was " << longestGap << " ms" << std::endl;
}

class PendingServerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        QString error;
        uri = startClubLog(server, &error);
        ASSERT_FALSE(uri.isEmpty()) << error.toStdString();
    }

    int rows(const QString& sql)
    {
        PgSession db(uri);
        return db.value(sql).toInt();
    }

    enum class Outage { Stop, Kill };

    // A position saving 300 contacts as the window does (straight to the server; into the
    // journal when it is away, and behind the journal while contacts wait there) while the
    // server goes away after about 100 and comes back 2 s later.
    void saveThroughOutage(Outage outage)
    {
        constexpr int Count = 300;
        PendingContacts journal(tmp.file("pending-contacts.jsonl"));
        std::atomic<int> done { 0 };
        std::atomic<int> kept { 0 };
        std::atomic<int> alreadyInLog { 0 };
        std::atomic<qint64> drainedAt { -1 };
        std::atomic<qint64> firstBackAt { -1 };
        // For the figures: time spent in direct saves and in flushes that saved, per contact.
        std::atomic<qint64> directNs { 0 }, directSaved { 0 }, flushNs { 0 }, flushSaved { 0 };
        std::atomic<bool> failed { false };
        QElapsedTimer clock;
        clock.start();
        std::thread position([&] {
            bool waiting = false;
            auto flush = [&] {
                QElapsedTimer t;
                t.start();
                const PendingFlush r = journal.flush(uri);
                if (!r.saved.isEmpty()) {
                    flushNs += t.nsecsElapsed();
                    flushSaved += r.saved.size();
                    if (firstBackAt < 0)
                        firstBackAt = clock.elapsed();
                }
                alreadyInLog += r.alreadyInLog;
                waiting = r.left > 0;
                if (!waiting)
                    drainedAt = clock.elapsed();
            };
            for (int i = 0; i < Count; ++i) {
                const QList<SavedField> fields = contactFields(i);
                if (waiting) {
                    failed = failed || journal.append(uri, fields).isEmpty();
                    ++kept;
                    flush();
                } else {
                    QElapsedTimer t;
                    t.start();
                    const DbError e = ContactSave::save(uri, fields);
                    if (!e) {
                        directNs += t.nsecsElapsed();
                        ++directSaved;
                    } else {
                        if (e.number != DbErrorNumber::ServerGone) {
                            ADD_FAILURE() << e.text().toStdString();
                            failed = true;
                        }
                        failed = failed || journal.append(uri, fields).isEmpty();
                        ++kept;
                        waiting = true;
                    }
                }
                done = i + 1;
                QThread::msleep(10);
            }
            QElapsedTimer deadline;
            deadline.start();
            while (waiting && deadline.elapsed() < 60000) {
                QThread::msleep(100); // the window's retry, faster
                flush();
            }
        });
        while (done < 100)
            QThread::msleep(1);
        if (outage == Outage::Stop)
            EXPECT_TRUE(server.stop());
        else
            server.kill();
        const int atOutage = done;
        QThread::msleep(2000);
        QString error;
        EXPECT_TRUE(server.start(&error)) << error.toStdString();
        const qint64 restartedAt = clock.elapsed();
        const int atRestart = done;
        position.join();

        EXPECT_FALSE(failed);
        EXPECT_GT(kept, 0);
        EXPECT_LT(atRestart, Count) << "the outage should fall inside the loop";
        EXPECT_EQ(rows("SELECT count(*) FROM logtab"), Count);
        EXPECT_EQ(rows("SELECT count(DISTINCT lower(Callsign)) FROM logtab"), Count);
        EXPECT_EQ(
            rows("SELECT count(*) FROM logtab WHERE Callsign ~ '^DL[0-9]+ABC$' AND NrSent <> ''"), Count);
        EXPECT_EQ(QFile(journal.path()).size(), 0);
        EXPECT_TRUE(journal.entries().isEmpty());
        std::cout << "outage after contact " << atOutage << ", back at " << atRestart << "; " << kept
                  << " contacts went through the journal, " << alreadyInLog
                  << " of them had reached the server already; first saved from the journal "
                  << (firstBackAt - restartedAt) << " ms after the restart, journal empty "
                  << (drainedAt - restartedAt) << " ms after it; per contact "
                  << flushNs / 1e6 / std::max<qint64>(1, flushSaved) << " ms from the journal vs "
                  << directNs / 1e6 / std::max<qint64>(1, directSaved) << " ms saved directly" << std::endl;
    }

    TempDir tmp;
    PgServer server;
    QString uri;
};

TEST_F(PendingServerTest, ServerStoppedAndRestartedMidSaveLosesNothing)
{
    saveThroughOutage(Outage::Stop);
}

TEST_F(PendingServerTest, ServerKilledAndRestartedMidSaveLosesNothing)
{
    saveThroughOutage(Outage::Kill);
}

// The save whose commit reached the server just before the connection broke: its answer was
// lost, so it went into the journal too. The flush finds it in the log and does not double it.
TEST_F(PendingServerTest, AContactAlreadyInTheLogIsNotSavedTwice)
{
    PendingContacts journal(tmp.file("pending-contacts.jsonl"));
    ASSERT_FALSE(ContactSave::save(uri, contactFields(1)));
    QList<SavedField> again = contactFields(1);
    again[2].value = again[2].value.toString().toLower(); // the callsign in another case is the same
    journal.append(uri, again);
    journal.append(uri, contactFields(2));
    journal.append(QStringLiteral("another.db"), contactFields(3)); // another log's: left alone
    const PendingFlush r = journal.flush(uri);
    EXPECT_EQ(r.saved.size(), 2);
    EXPECT_EQ(r.alreadyInLog, 1);
    EXPECT_EQ(r.left, 0);
    EXPECT_FALSE(r.error) << r.error.text().toStdString();
    EXPECT_EQ(rows("SELECT count(*) FROM logtab"), 2);
    ASSERT_EQ(journal.entries().size(), 1);
    EXPECT_EQ(journal.entries()[0].connection, "another.db");
}

// Another position saved the same contact, typed a little differently, while this one waited:
// the save's key check refuses it, and the flush counts it as in the log rather than failing.
TEST_F(PendingServerTest, AContactAnotherPositionSavedMeanwhileLeavesTheJournal)
{
    PendingContacts journal(tmp.file("pending-contacts.jsonl"));
    ASSERT_FALSE(ContactSave::save(uri, contactFields(5))); // GMT "1205"
    QList<SavedField> typedHere = contactFields(5);
    typedHere[1].value = QStringLiteral("12:05");
    journal.append(uri, typedHere);
    const PendingFlush r = journal.flush(uri);
    EXPECT_FALSE(r.error) << r.error.text().toStdString();
    EXPECT_EQ(r.saved.size(), 1);
    EXPECT_EQ(r.alreadyInLog, 1);
    EXPECT_EQ(r.left, 0);
    EXPECT_EQ(rows("SELECT count(*) FROM logtab"), 1);
}

TEST_F(PendingServerTest, AFlushWhileTheServerIsAwayKeepsEverything)
{
    PendingContacts journal(tmp.file("pending-contacts.jsonl"));
    for (int i = 0; i < 3; ++i)
        journal.append(uri, contactFields(i));
    const QByteArray before = tmp.read("pending-contacts.jsonl");
    server.kill();
    const PendingFlush r = journal.flush(uri);
    EXPECT_EQ(r.error.number, DbErrorNumber::ServerGone) << r.error.text().toStdString();
    EXPECT_TRUE(r.saved.isEmpty());
    EXPECT_EQ(r.left, 3);
    EXPECT_EQ(tmp.read("pending-contacts.jsonl"), before);
}

} // namespace
