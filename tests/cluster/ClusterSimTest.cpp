// The cluster connection against kestrel-sim's node in its telnet style: negotiation refused,
// the own callsign sent at the login prompt, clean text and parsed spots.
#include "cluster/ClusterClient.h"
#include "tests/support/SimProcess.h"

#include <QTcpSocket>
#include <QTest>
#include <gtest/gtest.h>

TEST(ClusterSim, ATelnetStyleNodeLogsInAndSpotsParse)
{
    SimProcess sim({}, { "--cluster-style", "telnet", "--spot-interval", "0.3" });
    ASSERT_TRUE(sim.ready()) << sim.errors().toStdString();
    const QString place = sim.place(QStringLiteral("cluster"));
    ClusterClient client;
    client.setAutoLogin(QStringLiteral("DL1KES"));
    client.connectTo({ place.section(u':', 0, 0), quint16(place.section(u':', 1).toUInt()) });

    ASSERT_TRUE(QTest::qWaitFor([&] { return client.spotsParsed() >= 3; }, 10000))
        << client.terminal().lines().join(u'\n').toStdString();
    const QStringList lines = client.terminal().lines();
    EXPECT_EQ(
        lines.value(1), "Welcome to KESTREL-SIM, Grüße aus Köln, the simulated DX cluster node of Kestrel.");
    EXPECT_TRUE(lines.contains("Hello DL1KES, this is KESTREL-SIM. Spots follow as they come in."));
    for (const QString& line : lines) {
        EXPECT_FALSE(line.contains(u'\x1b') || line.contains(u'\a') || line.contains(u'ÿ'))
            << line.toStdString();
        if (line.startsWith("DX de "))
            EXPECT_TRUE(line.endsWith(u'Z')) << line.toStdString();
    }
    EXPECT_TRUE(
        sim.waitFor(QStringLiteral("cluster"), QStringLiteral("logged_in=1")).contains("logged_in=1"));
}
