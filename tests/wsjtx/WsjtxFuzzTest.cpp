// Mutated datagrams (seeded, so a failure repeats): 100 000 straight into the codec and the
// listener, a few thousand through a real socket. Nothing crashes, nothing is saved, and the
// listener still reads a good Status afterwards.
#include "tests/logbook/EntryTestDb.h"
#include "tests/wsjtx/WsjtxDatagram.h"
#include "wsjtx/WsjtxCodec.h"
#include "wsjtx/WsjtxListener.h"

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QUdpSocket>

#include <gtest/gtest.h>

namespace {

// Seeds whose every mutation must stay out of the log: contacts without a call, or whose
// call a mutation can only damage (a logged contact needs its whole header and date intact).
QList<QByteArray> seeds()
{
    const WsjtxStatus s = wsjtxStatus(144174000, "FT8", "DL1ABC", "JO62");
    WsjtxQsoLogged noCall = msk144Contact();
    noCall.dxCall.clear();
    QString adifNoCall = msk144Adif();
    adifNoCall.remove(QStringLiteral("<call:6>OH6ABC "));
    return { WsjtxDatagram::heartbeat(QStringLiteral("WSJT-X")),
        WsjtxDatagram::status(QStringLiteral("WSJT-X"), s),
        WsjtxDatagram::status(QStringLiteral("JTDX"), s, 2),
        WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), noCall),
        WsjtxDatagram::loggedAdif(QStringLiteral("WSJT-X"), adifNoCall),
        WsjtxDatagram::close(QStringLiteral("JTDX")) };
}

QByteArray mutate(QRandomGenerator& rng, const QList<QByteArray>& seeds)
{
    QByteArray d = seeds[rng.bounded(int(seeds.size()))];
    const int edits = 1 + rng.bounded(4);
    for (int e = 0; e < edits; ++e) {
        const int at = d.isEmpty() ? 0 : rng.bounded(int(d.size()));
        switch (rng.bounded(7)) {
        case 0: // flip a bit
            if (!d.isEmpty())
                d[at] = char(d[at] ^ (1 << rng.bounded(8)));
            break;
        case 1: // any byte
            if (!d.isEmpty())
                d[at] = char(rng.bounded(256));
            break;
        case 2: // cut
            d.truncate(at);
            break;
        case 3: // insert noise
            for (int i = rng.bounded(8); i >= 0; --i)
                d.insert(at, char(rng.bounded(256)));
            break;
        case 4: { // a length field made large, small or null
            if (d.size() >= at + 4) {
                static const quint32 lengths[] = { 0xffffffffu, 0xfffffff0u, 0x7fffffffu, 0, 1, 65536 };
                const quint32 v = lengths[rng.bounded(6)];
                for (int i = 0; i < 4; ++i)
                    d[at + i] = char(v >> (24 - 8 * i));
            }
            break;
        }
        case 5: // bytes that are no UTF-8
            d.insert(at, QByteArray("\xc3\x28\xff\xfe\xed\xa0\x80", 1 + rng.bounded(7)));
            break;
        default: // a piece repeated
            d.insert(at, d.mid(rng.bounded(int(d.size()) + 1), rng.bounded(32)));
            break;
        }
    }
    return d;
}

// Counts the lines written to kestrel.wsjtx (and keeps them off the test's output).
struct LogLines {
    LogLines()
    {
        previous = qInstallMessageHandler(&LogLines::count);
        lines = 0;
    }
    ~LogLines() { qInstallMessageHandler(previous); }
    static void count(QtMsgType, const QMessageLogContext& context, const QString&)
    {
        if (context.category && QLatin1String(context.category) == QLatin1String("kestrel.wsjtx"))
            ++lines;
    }
    static inline int lines = 0;
    QtMessageHandler previous;
};

QByteArray noise(QRandomGenerator& rng, int size)
{
    QByteArray d(size, Qt::Uninitialized);
    for (char& c : d)
        c = char(rng.bounded(256));
    return d;
}

TEST(WsjtxFuzz, HundredThousandMutatedDatagramsSaveNothing)
{
    EntryTestDb db;
    WsjtxListener listener(std::make_unique<WsjtxContactLog>(db.path(), db.locator(), LogClock::Base::Utc));
    QSignalSpy saved(&listener, &WsjtxListener::contactSaved);
    LogLines log;
    QRandomGenerator rng(20261115);
    const QList<QByteArray> from = seeds();
    int refused = 0;
    for (int i = 0; i < 100000; ++i) {
        const QByteArray d = i % 1000 == 0 ? noise(rng, 65507) : mutate(rng, from);
        const WsjtxDecoded decoded = WsjtxCodec::decode(d);
        refused += decoded.ok ? 0 : 1;
        listener.receive(d);
    }
    EXPECT_GT(refused, 50000);
    // One line for each datagram dropped, none for the few that still read as a Status.
    EXPECT_GE(LogLines::lines, refused);
    EXPECT_LE(LogLines::lines, 100000);
    EXPECT_EQ(saved.size(), 0);
    EXPECT_EQ(db.rows({ "ID" }).size(), 0);
}

TEST(WsjtxFuzz, MutatedDatagramsThroughTheSocket)
{
    EntryTestDb db;
    WsjtxListener listener(std::make_unique<WsjtxContactLog>(db.path(), db.locator(), LogClock::Base::Utc));
    ASSERT_TRUE(listener.listen(QHostAddress::LocalHost, 0));
    LogLines log;
    QUdpSocket client;
    QRandomGenerator rng(42);
    const QList<QByteArray> from = seeds();
    for (int i = 0; i < 3000; ++i) {
        const QByteArray d = i % 500 == 0 ? noise(rng, 65507) : mutate(rng, from);
        client.writeDatagram(d, QHostAddress::LocalHost, listener.port());
        if (i % 50 == 0)
            QTest::qWait(1); // let the listener read, so the socket's buffer never overflows
    }
    client.writeDatagram(
        WsjtxDatagram::status(QStringLiteral("probe"), wsjtxStatus(432065000, "Q65", "ZZ9END")),
        QHostAddress::LocalHost, listener.port());
    EXPECT_TRUE(QTest::qWaitFor([&] { return listener.liveStatus().dxCall == u"ZZ9END"; }, 5000));
    EXPECT_GT(LogLines::lines, 1000);
    EXPECT_EQ(db.rows({ "ID" }).size(), 0);
}

} // namespace
