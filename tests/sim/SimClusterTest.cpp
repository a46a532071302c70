#include "sim/devices/SimClusterSession.h"

#include <gtest/gtest.h>

namespace {
const QDateTime now(QDate(2024, 5, 4), QTime(18, 7, 33), Qt::UTC);
} // namespace

TEST(SimSpot, LineHasTheUsualColumns)
{
    const SimSpot spot { QStringLiteral("DL1SIM"), 144300.0, QStringLiteral("OK1SIM"),
        QStringLiteral("JN79 tropo 559") };
    EXPECT_EQ(spot.line(QTime(18, 7)),
        QStringLiteral("DX de DL1SIM:     144300.0  OK1SIM        JN79 tropo 559                  1807Z"));
    const SimSpot micro { QStringLiteral("OE3SIM"), 10368100.0, QStringLiteral("S51SIM"), QString() };
    EXPECT_TRUE(micro.line(QTime(0, 5)).startsWith(QStringLiteral("DX de OE3SIM:    10368100.0  S51SIM  ")));
    EXPECT_TRUE(micro.line(QTime(0, 5)).endsWith(QStringLiteral("  0005Z")));
}

TEST(SimClusterSession, AsksForACallsignEchoesAndGreets)
{
    SimClusterSession session;
    EXPECT_TRUE(session.greeting().endsWith("login: "));
    EXPECT_TRUE(session.spot(SimSpotSource().next(), now).isEmpty()); // nobody there yet

    auto r = session.receive("\r\n", now); // the cluster window's "connect" sends an empty line
    EXPECT_EQ(r.out, QByteArray("\r\nPlease enter your call.\r\nlogin: "));
    EXPECT_FALSE(r.loggedIn);

    r = session.receive("n0c", now);
    EXPECT_EQ(r.out, QByteArray());
    r = session.receive("all\r\n", now);
    EXPECT_TRUE(r.loggedIn);
    EXPECT_EQ(session.callsign(), QStringLiteral("N0CALL"));
    EXPECT_TRUE(r.out.startsWith("n0call\r\nHello N0CALL, this is KESTREL-SIM."));
    EXPECT_TRUE(r.out.endsWith("N0CALL de KESTREL-SIM 04-May-2024 1807Z >\r\n"));

    r = session.receive("sh/dx\r\n", now);
    EXPECT_EQ(r.out, QByteArray("sh/dx\r\nN0CALL de KESTREL-SIM 04-May-2024 1807Z >\r\n"));
    r = session.receive("AB\bC\n", now);
    EXPECT_TRUE(r.out.startsWith("AC\r\n"));
}

TEST(SimClusterSession, SpotsAndTheUsersOwnSpot)
{
    SimClusterSession session;
    session.receive("N0CALL\r\n", now);
    const SimSpot spot { QStringLiteral("G4SIM"), 50125.0, QStringLiteral("EA8SIM"), QStringLiteral("Es") };
    EXPECT_EQ(session.spot(spot, now), spot.line(QTime(18, 7)).toLatin1() + "\r\n");

    auto r = session.receive("dx 144300.0 dl0xyz <Tr>JN48TH\r\n", now);
    EXPECT_EQ(r.out, QByteArray("dx 144300.0 dl0xyz <Tr>JN48TH\r\n"));
    ASSERT_TRUE(r.announced);
    EXPECT_EQ(r.announced->spotter, QStringLiteral("N0CALL"));
    EXPECT_EQ(r.announced->frequencyKhz, 144300.0);
    EXPECT_EQ(r.announced->call, QStringLiteral("DL0XYZ"));
    EXPECT_EQ(r.announced->comment, QStringLiteral("<Tr>JN48TH"));

    r = session.receive("dx fast DL0XYZ\r\n", now);
    EXPECT_FALSE(r.announced);
    EXPECT_TRUE(r.out.contains("is not a spot"));
}

TEST(SimClusterSession, ByeEndsTheSession)
{
    SimClusterSession session;
    session.receive("N0CALL\r\n", now);
    const auto r = session.receive("bye\r\nsh/dx\r\n", now);
    EXPECT_TRUE(r.close);
    EXPECT_EQ(r.out, QByteArray("bye\r\n73 de KESTREL-SIM, N0CALL disconnected.\r\n"));
    EXPECT_TRUE(session.isClosed());
    EXPECT_TRUE(session.receive("more\r\n", now).out.isEmpty());
    EXPECT_TRUE(session.spot(SimSpotSource().next(), now).isEmpty());
}

TEST(SimClusterSession, TheTelnetStyleTalksLikeARealNode)
{
    SimClusterSession session(QStringLiteral("KESTREL-SIM"), SimClusterSession::Style::Telnet);
    const QByteArray greeting = session.greeting();
    EXPECT_TRUE(greeting.startsWith(
        "\xff\xfb\x01\xff\xfb\x03\xff\xfd\x1f\r\nWelcome to KESTREL-SIM, Gr\xc3\xbc\xc3\x9f"
        "e aus K\xc3\xb6ln"));
    EXPECT_TRUE(greeting.endsWith("\x1b[1mPlease enter your call.\x1b[0m\r\nlogin: "));
    // The client's refusals are no part of the callsign; IAC IAC is a byte of the line.
    auto r = session.receive("\xff\xfe\x01\xff\xfe", now);
    r = session.receive("\x03\xff\xfc\x1fn0call\r\n", now);
    EXPECT_TRUE(r.loggedIn);
    EXPECT_EQ(session.callsign(), QStringLiteral("N0CALL"));
    r = session.receive("sh\xff\xff\xff\xf1x\r\n", now); // and IAC NOP is skipped
    EXPECT_TRUE(r.out.startsWith("sh\xffx\r\n"));
    const SimSpot spot { QStringLiteral("G4SIM"), 50125.0, QStringLiteral("EA8SIM"), QStringLiteral("Es") };
    EXPECT_EQ(session.spot(spot, now), "\a\x1b[1;32m" + spot.line(QTime(18, 7)).toLatin1() + "\x1b[0m\n\r");
}
