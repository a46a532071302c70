#include "cluster/TerminalText.h"

#include <QRandomGenerator>
#include <gtest/gtest.h>

TEST(TerminalText, LineEndsBackspaceAndControls)
{
    const std::pair<QList<QByteArray>, QStringList> cases[] = {
        // CR, LF, CR LF and LF CR each start one line.
        { { "a\rb\nc\r\nd" }, { "a", "b", "c", "d" } }, { { "a\r\n\r\nb" }, { "a", "", "b" } },
        { { "a\n\rb\n\r\n\rc" }, { "a", "b", "", "c" } }, { { "a\r\rb\n\nc" }, { "a", "", "b", "", "c" } },
        { { "end\r\n" }, { "end", "" } },
        // CR at the end of one chunk and LF at the start of the next are still one line end.
        { { "a\r", "", "\nb\r", "x" }, { "a", "b", "x" } },
        // Backspace removes the character before the caret, never reaching over a line start.
        { { "HELLX\bO" }, { "HELLO" } }, { { "AB\b\b\bC" }, { "C" } }, { { "ABX", "\b", "C" }, { "ABC" } },
        { { "AB\r\n\b\bC" }, { "AB", "C" } },
        // Valid UTF-8 is decoded, also when a read cuts a character; other bytes are Latin-1.
        { { "Gr\xc3\xbc\xc3\x9f \xe2\x82\xac \xf0\x9f\x93\xa1" }, { QStringLiteral("Grüß € 📡") } },
        { { "Gr\xc3", "\xbc\xc3", "\x9f" }, { QStringLiteral("Grüß") } },
        { { "Gr\xfc\xdf e" }, { QStringLiteral("Grüß e") } },
        { { "\xc3(\xe0\x80\xaf\x85!" }, { QStringLiteral("Ã(à¯!") } }, // broken, overlong, C1
        { { "Gr\xc3\r\n" }, { QStringLiteral("GrÃ"), "" } },
        // ANSI sequences, bells and other controls are not shown, wherever a read cuts them.
        { { QByteArray("a\x07\x1b[0mb\x7f\tc\0d", 12) }, { "ab\tcd" } },
        { { "\x1b[1;31mDX de\x1b[0m K1TTT:", "\x1b[1;3", "2mX\x1b[K\x1b]0;node\x07!" },
            { "DX de K1TTT:X!" } },
        { { "a\x1b[1;3\r\nb" }, { "a", "b" } }, // a sequence cut short by a line end
    };
    for (const auto& [chunks, lines] : cases) {
        TerminalText t;
        for (const QByteArray& c : chunks)
            t.feed(c);
        EXPECT_EQ(t.lines(), lines) << chunks.join("|").toStdString();
    }
}

TEST(TerminalText, KeepsTheLastLinesAndBreaksLongOnesWhichAreNoSpots)
{
    TerminalText t(50, 10);
    for (int i = 0; i < 1000; ++i)
        t.feed("line " + QByteArray::number(i) + "\r\n");
    t.feed(QByteArray(25, 'x'));
    QStringList lines = t.lines();
    EXPECT_EQ(lines.size(), 50);
    EXPECT_EQ(lines.mid(45), QStringList({ "line 998", "line 999", "xxxxxxxxxx", "xxxxxxxxxx", "xxxxx" }));
    t.takeEndedLines();
    t.feed("\r\nwhole\r\n");
    EXPECT_EQ(t.takeEndedLines(), QStringList({ "whole" })); // not the broken pieces
    t.feed(QByteArray(10, 'y') + "\r\n");
    EXPECT_EQ(t.takeEndedLines(), QStringList({ "yyyyyyyyyy" })); // exactly full is still whole
}

TEST(TerminalText, UpdatesRebuildTheSameTextInAView)
{
    // The view applies updates as the window does: replace its last line, append the rest, keep
    // at most maxLines lines.
    TerminalText t(40, 30);
    QStringList view { QString() };
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
        if (round % 3 != 0)
            continue;
        const TerminalText::Update u = t.takeUpdate();
        if (u.reset) {
            view = t.lines();
        } else {
            view.removeLast();
            view += u.finished;
            view += u.open;
            while (view.size() > t.maxLines())
                view.removeFirst();
        }
        ASSERT_EQ(view, t.lines()) << "round " << round;
    }
}
