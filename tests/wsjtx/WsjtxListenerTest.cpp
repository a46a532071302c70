// The listener on real UDP on 127.0.0.1 with a real log file: a contact WSJT-X logs (QSO
// Logged and Logged ADIF, possibly twice, possibly from two programs) is saved once with every
// field as sent; Status is shown per sender while it is live.
#include "wsjtx/WsjtxListener.h"
#include "logbook/db/DbConnection.h"
#include "tests/logbook/AdifJobs.h"
#include "tests/wsjtx/WsjtxDatagram.h"
#include "wsjtx/WsjtxRecord.h"

#include <QSignalSpy>
#include <QTest>
#include <QUdpSocket>

#include <gtest/gtest.h>

namespace {

struct Listening {
    explicit Listening(LogClock::Base clock = LogClock::Base::Utc)
        : listener(std::make_unique<WsjtxContactLog>(db.path(), db.locator(), clock))
    {
        listening = listener.listen(QHostAddress::LocalHost, 0);
    }
    void send(const QByteArray& datagram)
    {
        client.writeDatagram(datagram, QHostAddress::LocalHost, listener.port());
    }

    EntryTestDb db;
    WsjtxListener listener;
    QUdpSocket client;
    bool listening = false;
};

const QStringList AllColumns { "Date", "GMT", "Callsign", "Grid", "rsts", "rstr", "Band", "mode", "Nam",
    "Comment", "QSL", "Prop", "DXCC", "DxccNr", "QRB", "QTF", "Freq", "TxPwr", "MyCall", "MyGrid", "Cont",
    "CQZone", "ITUZone", "GEgridXY", "GEdata", "AdifExtra" };

QStringList texts(const Row& row)
{
    QStringList out;
    for (const QString& c : AllColumns)
        out << row.value(c).toString();
    return out;
}

bool waitRows(const EntryTestDb& db, int n)
{
    return QTest::qWaitFor([&] { return db.rows({ "ID" }).size() == n; }, 3000);
}

TEST(WsjtxListener, QsoLoggedAndLoggedAdifOfOneContactSaveOneRowWithEveryField)
{
    for (bool adifFirst : { false, true }) {
        Listening l;
        ASSERT_TRUE(l.listening) << l.listener.error().toStdString();
        QSignalSpy saved(&l.listener, &WsjtxListener::contactSaved);
        const QByteArray qso = WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), msk144Contact());
        const QByteArray adif = WsjtxDatagram::loggedAdif(QStringLiteral("WSJT-X"), msk144Adif());
        l.send(adifFirst ? adif : qso);
        l.send(adifFirst ? qso : adif);
        l.send(qso); // and once more
        ASSERT_TRUE(saved.wait(3000));
        QTest::qWait(300);
        EXPECT_EQ(saved.size(), 1);
        EXPECT_EQ(saved.first().first().value<WorkedContact>().callsign, "OH6ABC");
        const QList<Row> rows = l.db.rows(AllColumns);
        ASSERT_EQ(rows.size(), 1) << "ADIF first: " << adifFirst;
        const QStringList got = texts(rows.first());
        const QStringList expected { "2026-11-15", "18:20:07", "OH6ABC", "KP22", "+04", "-02", "144",
            "MSK144", "Jussi", "Geminids", "", "Ms", "Finland", "224", got[14], got[15], "144.361500", "500",
            "N0CALL", "JN48OW", "EU", "15", "18", got[23], got[24], got[25] };
        EXPECT_EQ(got, expected) << "ADIF first: " << adifFirst;
        // Distance, bearing and map texts come from the window's locator procedure.
        MapPosition p;
        ASSERT_TRUE(l.db.locator()(QStringLiteral("KP22"), p));
        EXPECT_NEAR(got[14].toDouble(), p.distanceKm, 0.5);
        EXPECT_NEAR(got[15].toDouble(), p.bearing, 0.5);
        EXPECT_EQ(got[23], p.coordText);
        EXPECT_TRUE(got[24].contains(QStringLiteral("OH6ABC"))) << got[24].toStdString();
        EXPECT_TRUE(got[25].contains(QStringLiteral("TIME_OFF"))) << got[25].toStdString();
    }
}

TEST(WsjtxListener, UtcAsSentGoesOnTheLogsLocalClock)
{
    const BerlinTime tz;
    Listening l(LogClock::Base::Local);
    ASSERT_TRUE(l.listening);
    l.send(WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), msk144Contact()));
    ASSERT_TRUE(waitRows(l.db, 1));
    const Row r = l.db.rows({ "Date", "GMT" }).first();
    EXPECT_EQ(r.value("Date").toString(), "2026-11-15");
    EXPECT_EQ(r.value("GMT").toString(), "19:20:07");
}

TEST(WsjtxListener, AContactAlreadyInTheLogIsNotSavedAgain)
{
    Listening l;
    ASSERT_TRUE(l.db.add({ contact("OH6ABC", "KP22", "144", { { "GMT", "18:20" }, { "mode", "MSK144" } }) }));
    l.send(WsjtxDatagram::loggedAdif(QStringLiteral("WSJT-X"), msk144Adif()));
    QTest::qWait(500);
    EXPECT_EQ(l.db.rows({ "ID" }).size(), 1);
}

// Two positions on a server log both logging what WSJT-X sent (one radio, two programs): the
// second finds the contact the first saved after it read the log, and takes it as logged.
TEST(WsjtxListener, AContactAnotherPositionSavedMeanwhileCountsAsLogged)
{
    EntryTestDb db;
    if (!DbConnection::isServer(db.path()))
        GTEST_SKIP() << "positions share a log on a server only";
    WsjtxContactLog here(db.path(), db.locator(), LogClock::Base::Utc);
    WsjtxContactLog there(db.path(), db.locator(), LogClock::Base::Utc);
    const AdifRecord contact = WsjtxRecord::fromQso(msk144Contact());
    AdifRecord earlier = contact;
    earlier.fields.insert(QStringLiteral("CALL"), QStringLiteral("OH6XYZ"));
    EXPECT_EQ(here.log(earlier).kind, WsjtxContactLog::Outcome::Saved); // here has read the log
    EXPECT_EQ(there.log(contact).kind, WsjtxContactLog::Outcome::Saved);
    const WsjtxContactLog::Outcome again = here.log(contact);
    EXPECT_EQ(again.kind, WsjtxContactLog::Outcome::AlreadyLogged) << again.text.toStdString();
    EXPECT_EQ(here.log(contact).kind, WsjtxContactLog::Outcome::AlreadyLogged);
    EXPECT_EQ(db.rows({ "ID" }).size(), 2);
}

TEST(WsjtxListener, TwoSendersAreToldApartByTheirId)
{
    Listening l;
    ASSERT_TRUE(l.listening);
    QSignalSpy shown(&l.listener, &WsjtxListener::statusChanged);
    l.send(WsjtxDatagram::status(QStringLiteral("WSJT-X"), wsjtxStatus(144174000, "FT8", "DL1ABC", "JO62")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !l.listener.statusText().isEmpty(); }, 3000));
    EXPECT_EQ(l.listener.statusText(), "WSJT-X: DL1ABC JO62  144.174 MHz FT8");
    l.send(WsjtxDatagram::status(QStringLiteral("JTDX"), wsjtxStatus(50313000, "FT8", "EA8XYZ")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return l.listener.statusText().startsWith("JTDX"); }, 3000));
    EXPECT_EQ(l.listener.statusText(), "JTDX: EA8XYZ  50.313 MHz FT8");
    // JTDX closes: WSJT-X's Status is still live and shown again.
    l.send(WsjtxDatagram::close(QStringLiteral("JTDX")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return l.listener.statusText().startsWith("WSJT-X"); }, 3000));
    EXPECT_EQ(l.listener.liveStatus().dxCall, "DL1ABC");
    l.send(WsjtxDatagram::close(QStringLiteral("WSJT-X")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return l.listener.statusText().isEmpty(); }, 3000));
    EXPECT_EQ(shown.size(), 4);

    // Each logs its own contact; the same contact from both is one row.
    WsjtxQsoLogged other = msk144Contact();
    other.dxCall = QStringLiteral("SM5XYZ");
    other.mode = QStringLiteral("Q65");
    other.txHz = 1296100000;
    l.send(WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), msk144Contact()));
    l.send(WsjtxDatagram::qsoLogged(QStringLiteral("JTDX"), other));
    l.send(WsjtxDatagram::qsoLogged(QStringLiteral("JTDX"), msk144Contact()));
    ASSERT_TRUE(waitRows(l.db, 2));
    QTest::qWait(300);
    const QList<Row> rows = l.db.rows({ "Callsign", "Band", "mode", "Freq" });
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[1].value("Callsign").toString(), "SM5XYZ");
    EXPECT_EQ(rows[1].value("Band").toString(), "1296");
    EXPECT_EQ(rows[1].value("mode").toString(), "Q65");
    EXPECT_EQ(rows[1].value("Freq").toString(), "1296.100000");
}

TEST(WsjtxListener, MulticastGroupIsJoined)
{
    EntryTestDb db;
    WsjtxListener listener(std::make_unique<WsjtxContactLog>(db.path(), db.locator(), LogClock::Base::Utc));
    const QHostAddress group(QStringLiteral("239.255.0.1"));
    if (!listener.listen(group, 0))
        GTEST_SKIP() << "no multicast here: " << listener.error().toStdString();
    QUdpSocket sender;
    sender.setSocketOption(QAbstractSocket::MulticastLoopbackOption, 1);
    sender.writeDatagram(WsjtxDatagram::status(QStringLiteral("WSJT-X"), wsjtxStatus(0, "FT8", "DL1ABC")),
        group, listener.port());
    if (!QTest::qWaitFor([&] { return !listener.statusText().isEmpty(); }, 2000))
        GTEST_SKIP() << "no multicast route on this machine";
    EXPECT_EQ(listener.liveStatus().dxCall, "DL1ABC");
}

} // namespace
