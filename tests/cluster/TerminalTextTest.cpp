#include "cluster/TerminalText.h"

#include <QRandomGenerator>
#include <gtest/gtest.h>

namespace {

QStringList fed(const QList<QByteArray>& chunks, int maxLines = 100, int maxLength = 100)
{
    TerminalText t(maxLines, maxLength);
    for (const QByteArray& c : chunks)
        t.feed(c);
    return t.lines();
}

// A view that applies updates the way the window does: replace its last line, append the
// rest, keep at most maxLines lines.
struct MirrorView {
    QStringList lines { QString() };
    void apply(const TerminalText& t, const TerminalText::Update& u)
    {
        if (u.reset) {
            lines = t.lines();
            return;
        }
        lines.removeLast();
        lines += u.finished;
        lines += u.open;
        while (lines.size() > t.maxLines())
            lines.removeFirst();
    }
};

} // namespace

TEST(TerminalText, CrLfAndCrLfEachStartOneLine)
{
    EXPECT_EQ(fed({ "a\rb\nc\r\nd" }), QStringList({ "a", "b", "c", "d" }));
    EXPECT_EQ(fed({ "a\r\n\r\nb" }), QStringList({ "a", "", "b" }));
    // LF CR is two line ends, an empty line between.
    EXPECT_EQ(fed({ "a\n\rb" }), QStringList({ "a", "", "b" }));
    // CR at the end of one chunk and LF at the start of the next are still one line end.
    EXPECT_EQ(fed({ "a\r", "\nb" }), QStringList({ "a", "b" }));
    EXPECT_EQ(fed({ "a\r", "", "\nb\r", "x" }), QStringList({ "a", "b", "x" }));
    EXPECT_EQ(fed({ "end\r\n" }), QStringList({ "end", "" }));
}

TEST(TerminalText, BackspaceRemovesTheCharacterBeforeTheCaret)
{
    EXPECT_EQ(fed({ "HELLX\bO" }), QStringList({ "HELLO" }));
    EXPECT_EQ(fed({ "AB\b\b\bC" }), QStringList({ "C" }));
    EXPECT_EQ(fed({ "ABX", "\b", "C" }), QStringList({ "ABC" }));
    // It never reaches back over a line start.
    EXPECT_EQ(fed({ "AB\r\n\b\bC" }), QStringList({ "AB", "C" }));
}

TEST(TerminalText, EachByteIsOneCharacterControlsAreNotShown)
{
    EXPECT_EQ(fed({ QByteArray("Gr\xfc\xdf"
                               "e") }),
        QStringList({ QString::fromLatin1("Gr\xfc\xdf"
                                          "e") }));
    EXPECT_EQ(fed({ QByteArray("a\x07\x1b[0mb\x7f\tc\0d", 12) }), QStringList({ "a[0mb\tcd" }));
}

TEST(TerminalText, KeepsOnlyTheLastLines)
{
    TerminalText t(50, 100);
    QByteArray bytes;
    for (int i = 0; i < 1000; ++i)
        bytes += "line " + QByteArray::number(i) + "\r\n";
    t.feed(bytes);
    t.feed("open");
    const QStringList lines = t.lines();
    ASSERT_EQ(lines.size(), 50);
    EXPECT_EQ(lines.first(), "line 951");
    EXPECT_EQ(lines[48], "line 999");
    EXPECT_EQ(lines.last(), "open");
}

TEST(TerminalText, LongLinesAreBrokenAndNeverTakenForSpots)
{
    TerminalText t(100, 10);
    t.feed(QByteArray(25, 'x'));
    EXPECT_EQ(t.lines(), QStringList({ "xxxxxxxxxx", "xxxxxxxxxx", "xxxxx" }));
    t.feed("\r\nwhole\r\n");
    EXPECT_EQ(t.takeEndedLines(), QStringList({ "whole" }));
    t.feed(QByteArray(10, 'y'));
    EXPECT_EQ(t.openLine(), "yyyyyyyyyy");
    t.feed("\r\n");
    // Exactly full is still a whole line.
    EXPECT_EQ(t.takeEndedLines(), QStringList({ "yyyyyyyyyy" }));
}

TEST(TerminalText, NoticeEndsTheOpenLineWhichIsNoSpot)
{
    TerminalText t;
    t.feed("first\r\nDX de DL1ABC:  14025.0  K1A  cq");
    t.appendNotice("*** closed");
    EXPECT_EQ(t.lines(), QStringList({ "first", "DX de DL1ABC:  14025.0  K1A  cq", "*** closed", "" }));
    EXPECT_EQ(t.takeEndedLines(), QStringList({ "first" }));
    t.feed("next\r\n");
    EXPECT_EQ(t.takeEndedLines(), QStringList({ "next" }));
    t.appendNotice("*** again");
    EXPECT_EQ(t.lines().mid(3), QStringList({ "next", "*** again", "" }));
}

TEST(TerminalText, UpdatesRebuildTheSameTextInAView)
{
    TerminalText t(40, 30);
    MirrorView view;
    QRandomGenerator rng(1234);
    const QByteArray alphabet("abc DX\r\n\b\b\t\x07");
    for (int round = 0; round < 400; ++round) {
        QByteArray chunk;
        const int n = static_cast<int>(rng.bounded(round % 50 == 0 ? 3000 : 60));
        for (int i = 0; i < n; ++i)
            chunk += alphabet[static_cast<int>(rng.bounded(alphabet.size()))];
        t.feed(chunk);
        if (round % 37 == 0)
            t.appendNotice("*** notice");
        if (round % 3 == 0) {
            view.apply(t, t.takeUpdate());
            ASSERT_EQ(view.lines, t.lines()) << "round " << round;
        }
    }
    for (const QString& l : t.lines())
        EXPECT_LE(l.size(), 30);
}
