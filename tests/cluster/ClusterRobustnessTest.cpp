#include "tests/cluster/WindowFixture.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTextBlock>
#include <QTimer>

namespace {

// Ticks every 10 ms and remembers the longest time the event loop kept it waiting.
struct Heartbeat {
    QTimer timer;
    QElapsedTimer clock;
    qint64 last = 0;
    qint64 maxGap = 0;
    Heartbeat()
    {
        clock.start();
        QObject::connect(&timer, &QTimer::timeout, [this] {
            maxGap = std::max(maxGap, clock.elapsed() - last);
            last = clock.elapsed();
        });
        timer.start(10);
    }
};

// The terminal is bounded in lines and in line length, and every row of the table is a spot.
void expectSane(WindowFixture& f)
{
    auto* term = f.child<QPlainTextEdit>("TXTterm");
    const TerminalText& model = f.window->client()->terminal();
    EXPECT_LE(term->blockCount(), model.maxLines());
    for (QTextBlock b = term->document()->begin(); b.isValid(); b = b.next())
        ASSERT_LE(b.text().size(), model.maxLineLength());
    EXPECT_LE(f.spotRows(), f.window->client()->spots()->maxSpots());
    for (int r = 0; r < f.spotRows(); ++r) {
        EXPECT_FALSE(f.cell(r, 2).isEmpty());
        EXPECT_TRUE(f.cell(r, 0).endsWith('Z'));
    }
}

// After the flood a spot still comes through, the window never stalled for long, and a typed
// line still goes out.
void expectSpotAfterAndStillWorking(WindowFixture& f, const Heartbeat& beat)
{
    f.node.send("\r\nDX de DL1ABC:  14025.0  K1A  after the flood  1234Z\r\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.spotRows() == 1; }, 90000));
    EXPECT_EQ(f.cell(0, 2), "K1A");
    std::printf("longest event-loop stall: %lld ms\n", static_cast<long long>(beat.maxGap));
    // Generous: a frozen window stalls for the whole flood (seconds), a live one for a slice.
    EXPECT_LT(beat.maxGap, 2000);
    expectSane(f);
    f.type("sh/dx");
    // Before it: the refusals of whatever telnet options the random bytes asked for.
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.node.received.endsWith("SH/DX\r\n"); }, 5000));
}

} // namespace

TEST(ClusterRobustness, TenMegabytesOfRandomBytes)
{
    WindowFixture f;
    f.open();
    QByteArray flood(10 * 1024 * 1024, Qt::Uninitialized);
    QRandomGenerator(20240613).fillRange(reinterpret_cast<quint32*>(flood.data()), flood.size() / 4);
    Heartbeat beat;
    f.node.send(flood);
    expectSpotAfterAndStillWorking(f, beat);
    EXPECT_TRUE(f.terminalText().contains("DX de DL1ABC:  14025.0  K1A  after the flood  1234Z"));
}

TEST(ClusterRobustness, OneMegabyteLineWithoutEnd)
{
    WindowFixture f;
    f.open();
    Heartbeat beat;
    f.node.send(QByteArray(1024 * 1024, 'x'));
    // The line is broken into pieces of the longest line length.
    auto* term = f.child<QPlainTextEdit>("TXTterm");
    const int length = f.window->client()->terminal().maxLineLength();
    const int pieces = (1024 * 1024 + length - 1) / length;
    ASSERT_TRUE(QTest::qWaitFor([&] { return term->blockCount() == pieces; }, 30000));
    EXPECT_EQ(term->document()->lastBlock().text().size(), 1024 * 1024 - (pieces - 1) * length);
    expectSpotAfterAndStillWorking(f, beat);
}

TEST(ClusterRobustness, NodeClosingMidLineThenReconnectAndExit)
{
    WindowFixture f;
    f.open();
    const QString whole = "DX de W3LPL:     14025.0  JA1ABC       CQ CQ                          1234Z";
    f.node.send(whole.toLatin1() + "\r\nDX de DL1ABC:  14025.0  K1A  cq");
    f.node.dropClient();
    const QString closed
        = QString("*** Connection to 127.0.0.1:%1 closed. Press TCP to reconnect.").arg(f.node.port());
    ASSERT_TRUE(f.waitForTerminal(closed));
    EXPECT_EQ(f.terminalText(), whole + "\nDX de DL1ABC:  14025.0  K1A  cq\n" + closed + "\n");
    // The cut line is no spot, not even once the next connection completes a line.
    EXPECT_EQ(f.spotRows(), 1);
    f.click("cmdTCP");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return f.node.connections == 2 && f.window->client()->isConnected(); }, 5000));
    f.node.send("  1235Z\r\nDX de G4ABC:     50110.0  VK4ABC       tnx qso 73   1236Z\r\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.spotRows() == 2; }, 5000));
    EXPECT_EQ(f.cell(0, 2), "VK4ABC");
    EXPECT_EQ(f.cell(1, 2), "JA1ABC");

    f.click("cmdExit");
    EXPECT_FALSE(f.window->isVisible());
    EXPECT_FALSE(f.window->client()->isConnected());
    f.window->show(); // opening again runs the load: a new connection
    EXPECT_TRUE(QTest::qWaitFor([&] { return f.node.connections == 3; }, 5000));
}

TEST(ClusterRobustness, AStreamOfSpotsArrivesWholeAndTheTableKeepsTheNewest)
{
    WindowFixture f;
    f.open();
    QByteArray stream;
    const int count = 20000;
    for (int i = 0; i < count; ++i)
        stream += QString::asprintf("DX de DL%dABC:  %.1f  K%dA  stream %d  %02d%02dZ\r\n", i % 10,
            14000.0 + i % 350, i, i, (i / 60) % 24, i % 60)
                      .toLatin1();
    f.node.send(stream);
    ClusterClient* client = f.window->client();
    ASSERT_TRUE(QTest::qWaitFor([&] { return client->spotsParsed() == count; }, 30000))
        << client->spotsParsed();
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.cell(0, 2) == "K19999A"; }, 5000));
    const int max = client->spots()->maxSpots();
    EXPECT_EQ(f.spotRows(), max);
    EXPECT_EQ(f.cell(max - 1, 2), QString("K%1A").arg(count - max));
    EXPECT_TRUE(f.terminalText().endsWith("DX de DL9ABC:  14049.0  K19999A  stream 19999  2119Z\n"));
    expectSane(f);
}
