// The datagram codec on datagrams built as WSJT-X builds them, in both schemas, and on the
// damaged ones it must refuse with the reason.
#include "wsjtx/WsjtxCodec.h"
#include "tests/wsjtx/WsjtxDatagram.h"
#include "wsjtx/WsjtxRecord.h"

#include <gtest/gtest.h>

namespace {

WsjtxStatus fourMetres()
{
    WsjtxStatus s = wsjtxStatus(70154000, "FT8", "G4ABC", "IO91");
    s.report = QStringLiteral("-12");
    s.txMode = QStringLiteral("FT8");
    s.txEnabled = true;
    s.rxDf = 1200;
    s.txDf = 1500;
    s.deCall = QStringLiteral("N0CALL");
    s.deGrid = QStringLiteral("JN48");
    return s;
}

class Schemas : public testing::TestWithParam<quint32> { };

TEST_P(Schemas, HeartbeatStatusQsoAndAdifReadBack)
{
    const quint32 schema = GetParam();
    const WsjtxDecoded h = WsjtxCodec::decode(WsjtxDatagram::heartbeat(QStringLiteral("JTDX"), schema));
    ASSERT_TRUE(h.ok) << h.error.toStdString();
    EXPECT_EQ(h.message.schema, schema);
    EXPECT_EQ(h.message.type, quint32(WsjtxMessage::Heartbeat));
    EXPECT_EQ(h.message.id, "JTDX");
    EXPECT_EQ(h.message.maxSchema, 3u);
    EXPECT_EQ(h.message.version, "2.6.1");
    EXPECT_EQ(h.message.revision, "abc123");

    const WsjtxDecoded s
        = WsjtxCodec::decode(WsjtxDatagram::status(QStringLiteral("WSJT-X"), fourMetres(), schema));
    ASSERT_TRUE(s.ok) << s.error.toStdString();
    const WsjtxStatus& st = s.message.status;
    EXPECT_EQ(st.dialHz, 70154000u);
    EXPECT_EQ(QStringList({ st.mode, st.dxCall, st.report, st.txMode, st.deCall, st.deGrid, st.dxGrid }),
        QStringList({ "FT8", "G4ABC", "-12", "FT8", "N0CALL", "JN48", "IO91" }));
    EXPECT_TRUE(st.txEnabled);
    EXPECT_FALSE(st.transmitting);
    EXPECT_EQ(st.rxDf, 1200u);
    EXPECT_EQ(st.txDf, 1500u);

    const WsjtxQsoLogged sent = msk144Contact();
    const WsjtxDecoded q
        = WsjtxCodec::decode(WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), sent, schema));
    ASSERT_TRUE(q.ok) << q.error.toStdString();
    const WsjtxQsoLogged& got = q.message.qso;
    EXPECT_EQ(got.on, sent.on);
    EXPECT_EQ(got.off, sent.off);
    EXPECT_EQ(got.on.timeSpec(), Qt::UTC);
    EXPECT_EQ(got.txHz, sent.txHz);
    EXPECT_EQ(QStringList({ got.dxCall, got.dxGrid, got.mode, got.reportSent, got.reportReceived, got.txPower,
                  got.comments, got.name, got.myCall, got.myGrid, got.propagation }),
        QStringList({ sent.dxCall, sent.dxGrid, sent.mode, sent.reportSent, sent.reportReceived, sent.txPower,
            sent.comments, sent.name, sent.myCall, sent.myGrid, sent.propagation }));

    const WsjtxDecoded a
        = WsjtxCodec::decode(WsjtxDatagram::loggedAdif(QStringLiteral("WSJT-X"), msk144Adif(), schema));
    ASSERT_TRUE(a.ok) << a.error.toStdString();
    EXPECT_EQ(a.message.adif, msk144Adif());
}

INSTANTIATE_TEST_SUITE_P(Wsjtx, Schemas, testing::Values(2u, 3u));

TEST(WsjtxCodec, OlderQsoLoggedWithoutTheLaterFieldsIsRead)
{
    const QByteArray old = WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), msk144Contact(), 3, false);
    const WsjtxDecoded d = WsjtxCodec::decode(old);
    ASSERT_TRUE(d.ok) << d.error.toStdString();
    EXPECT_EQ(d.message.qso.dxCall, "OH6ABC");
    EXPECT_TRUE(d.message.qso.myCall.isEmpty());
}

TEST(WsjtxCodec, DamagedDatagramsAreRefusedWithTheReason)
{
    const QByteArray good = WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), msk144Contact());
    QByteArray wrongMagic = good;
    wrongMagic[0] = char(0xab);
    QByteArray badCall = WsjtxDatagram(WsjtxMessage::QsoLogged, QStringLiteral("WSJT-X"))
                             .dateTime(msk144Contact().off)
                             .raw(QByteArray("OH6\xff\xfe", 5))
                             .bytes();
    QByteArray hugeLength
        = WsjtxDatagram(WsjtxMessage::Status, QStringLiteral("WSJT-X")).number(quint64(1)).bytes();
    hugeLength += QByteArray::fromHex("fffffff0") + "FT8";
    QByteArray badDate = WsjtxDatagram(WsjtxMessage::QsoLogged, QStringLiteral("WSJT-X"))
                             .number(qint64(2461000))
                             .number(quint32(90000000))
                             .number(quint8(1))
                             .bytes();
    QByteArray badZone = WsjtxDatagram(WsjtxMessage::QsoLogged, QStringLiteral("WSJT-X"))
                             .number(qint64(2461000))
                             .number(quint32(0))
                             .number(quint8(7))
                             .bytes();
    const struct {
        const char* name;
        QByteArray datagram;
        const char* error;
    } cases[] = {
        { "empty", QByteArray(), "magic number is cut short" },
        { "wrong magic", wrongMagic, "not a WSJT-X datagram (magic number abbccbda)" },
        { "schema 1", WsjtxDatagram::heartbeat(QStringLiteral("WSJT-X"), 1), "unknown schema 1" },
        { "schema 4", WsjtxDatagram::heartbeat(QStringLiteral("WSJT-X"), 4), "unknown schema 4" },
        { "cut in the id", good.left(15), "sender id is cut short" },
        { "cut in the call", good.left(good.indexOf("OH6ABC") + 3), "DX call is cut short" },
        { "call not UTF-8", badCall, "DX call is not UTF-8" },
        { "length past the end", hugeLength, "mode is cut short" },
        { "no such time", badDate, "date and time off is no valid date and time" },
        { "unknown kind of time zone", badZone, "date and time off has no valid time zone" },
    };
    for (const auto& c : cases) {
        const WsjtxDecoded d = WsjtxCodec::decode(c.datagram);
        EXPECT_FALSE(d.ok) << c.name;
        EXPECT_EQ(d.error, QLatin1String(c.error)) << c.name;
    }
}

TEST(WsjtxCodec, EveryCutBeforeTheStartTimeIsRefused)
{
    const QByteArray good = WsjtxDatagram::qsoLogged(QStringLiteral("WSJT-X"), msk144Contact());
    // The time on ends 13 bytes after the name "Jussi".
    const qsizetype required = good.indexOf("Jussi") + 5 + 13;
    for (qsizetype n = 0; n < required; ++n)
        EXPECT_FALSE(WsjtxCodec::decode(good.left(n)).ok) << n;
    EXPECT_TRUE(WsjtxCodec::decode(good.left(required)).ok);
}

TEST(WsjtxRecord, QsoLoggedBecomesTheRecordWsjtxWouldWrite)
{
    const AdifRecord r = WsjtxRecord::fromQso(msk144Contact());
    AdifRecord adif;
    ASSERT_TRUE(WsjtxRecord::fromAdif(msk144Adif(), adif, nullptr));
    for (const char* name : { "CALL", "GRIDSQUARE", "MODE", "RST_SENT", "RST_RCVD", "QSO_DATE", "TIME_ON",
             "QSO_DATE_OFF", "TIME_OFF", "FREQ", "STATION_CALLSIGN", "MY_GRIDSQUARE", "TX_PWR", "COMMENT",
             "NAME", "PROP_MODE" })
        EXPECT_EQ(r.value(QLatin1String(name)), adif.value(QLatin1String(name))) << name;
    EXPECT_EQ(WsjtxRecord::megahertz(10368100000ull, true), "10368.1");
    EXPECT_EQ(WsjtxRecord::megahertz(144174000), "144.174000");
}

} // namespace
