#include "tests/cluster/WindowFixture.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTextBlock>
#include <QTimer>

#include <algorithm>

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
        timer.setInterval(10);
        QObject::connect(&timer, &QTimer::timeout, [this] {
            const qint64 now = clock.elapsed();
            maxGap = std::max(maxGap, now - last);
            last = now;
        });
        timer.start();
    }
};

const QByteArray spotAfter = "\r\nDX de DL1ABC:  14025.0  K1A  after the flood  1234Z\r\n";

bool tableHolds(QTableView* table, const QString& call)
{
    for (int r = 0; r < table->model()->rowCount(); ++r) {
        if (table->model()->index(r, 2).data().toString() == call)
            return true;
    }
    return false;
}

// The terminal is bounded in lines and in line length, and every row of the table is a spot.
void expectSane(WindowFixture& f)
{
    auto* term = f.child<QPlainTextEdit>("TXTterm");
    const TerminalText& model = f.window->client()->terminal();
    EXPECT_LE(term->blockCount(), model.maxLines());
    int longest = 0;
    for (QTextBlock b = term->document()->begin(); b.isValid(); b = b.next())
        longest = std::max(longest, static_cast<int>(b.text().size()));
    EXPECT_LE(longest, model.maxLineLength());
    auto* table = f.child<QTableView>("tblSpots");
    EXPECT_LE(table->model()->rowCount(), f.window->client()->spots()->maxSpots());
    for (int r = 0; r < table->model()->rowCount(); ++r) {
        EXPECT_FALSE(table->model()->index(r, 2).data().toString().isEmpty());
        EXPECT_TRUE(table->model()->index(r, 0).data().toString().endsWith('Z'));
    }
}

// The window still answers the operator: a typed line goes out.
void expectStillWorking(WindowFixture& f)
{
    auto* input = f.child<QLineEdit>("TXTinput");
    QTest::keyClicks(input, "sh/dx");
    QTest::keyClick(input, Qt::Key_Return);
    EXPECT_TRUE(f.node.waitForReceived("SH/DX\r\n"));
}

} // namespace

TEST(ClusterRobustness, TenMegabytesOfRandomBytes)
{
    WindowFixture f;
    f.open();
    QByteArray flood(10 * 1024 * 1024, Qt::Uninitialized);
    QRandomGenerator rng(20240613);
    rng.fillRange(reinterpret_cast<quint32*>(flood.data()), flood.size() / 4);
    Heartbeat beat;
    f.node.send(flood);
    f.node.send(spotAfter);
    auto* table = f.child<QTableView>("tblSpots");
    ASSERT_TRUE(QTest::qWaitFor([&] { return tableHolds(table, "K1A"); }, 90000));
    std::printf("longest event-loop stall during the flood: %lld ms\n", static_cast<long long>(beat.maxGap));
    // Generous: a frozen window stalls for the whole flood (seconds), a live one for a slice.
    EXPECT_LT(beat.maxGap, 2000);
    EXPECT_TRUE(f.terminalText().contains("DX de DL1ABC:  14025.0  K1A  after the flood  1234Z"));
    EXPECT_EQ(table->model()->rowCount(), 1);
    expectSane(f);
    expectStillWorking(f);
}

TEST(ClusterRobustness, OneMegabyteLineWithoutEnd)
{
    WindowFixture f;
    f.open();
    Heartbeat beat;
    f.node.send(QByteArray(1024 * 1024, 'x'));
    auto* term = f.child<QPlainTextEdit>("TXTterm");
    // The line is broken into pieces of the longest line length.
    const int length = f.window->client()->terminal().maxLineLength();
    const int pieces = (1024 * 1024 + length - 1) / length;
    ASSERT_TRUE(QTest::qWaitFor([&] { return term->blockCount() == pieces; }, 30000));
    EXPECT_EQ(term->document()->lastBlock().text().size(), 1024 * 1024 - (pieces - 1) * length);
    expectSane(f);
    f.node.send(spotAfter);
    auto* table = f.child<QTableView>("tblSpots");
    ASSERT_TRUE(QTest::qWaitFor([&] { return tableHolds(table, "K1A"); }, 30000));
    std::printf(
        "longest event-loop stall during the long line: %lld ms\n", static_cast<long long>(beat.maxGap));
    EXPECT_LT(beat.maxGap, 2000);
    EXPECT_EQ(table->model()->rowCount(), 1);
    expectSane(f);
    expectStillWorking(f);
}

TEST(ClusterRobustness, NodeClosingMidLine)
{
    WindowFixture f;
    f.open();
    f.node.send("DX de W3LPL:     14025.0  JA1ABC       CQ CQ                          1234Z\r\n"
                "DX de DL1ABC:  14025.0  K1A  cq");
    f.node.dropClient();
    const QString closed
        = QString("*** Connection to 127.0.0.1:%1 closed. Press TCP to reconnect.").arg(f.node.port());
    ASSERT_TRUE(f.waitForTerminal(closed));
    EXPECT_EQ(f.terminalText(),
        "DX de W3LPL:     14025.0  JA1ABC       CQ CQ                          1234Z\n"
        "DX de DL1ABC:  14025.0  K1A  cq\n"
            + closed + "\n");
    // The cut line is no spot, not even once the next connection completes a line.
    auto* table = f.child<QTableView>("tblSpots");
    EXPECT_EQ(table->model()->rowCount(), 1);
    f.click("cmdTCP");
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return f.node.connections() == 2 && f.window->client()->isConnected(); }, 5000));
    f.node.send("  1235Z\r\nDX de G4ABC:     50110.0  VK4ABC       tnx qso 73   1236Z\r\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return table->model()->rowCount() == 2; }, 5000));
    EXPECT_EQ(table->model()->index(0, 2).data().toString(), "VK4ABC");
    EXPECT_EQ(table->model()->index(1, 2).data().toString(), "JA1ABC");
    expectSane(f);
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
    auto* table = f.child<QTableView>("tblSpots");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return table->model()->index(0, 2).data().toString() == "K19999A"; }, 5000));
    EXPECT_EQ(table->model()->rowCount(), client->spots()->maxSpots());
    EXPECT_EQ(table->model()->index(table->model()->rowCount() - 1, 2).data().toString(),
        QString("K%1A").arg(count - client->spots()->maxSpots()));
    EXPECT_TRUE(f.terminalText().endsWith("DX de DL9ABC:  14049.0  K19999A  stream 19999  2119Z\n"))
        << f.terminalText().right(200).toStdString();
    expectSane(f);
}
