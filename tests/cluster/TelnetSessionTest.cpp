#include "cluster/TelnetSession.h"

#include <QList>
#include <gtest/gtest.h>

TEST(TelnetSession, RefusesEveryOptionAndPassesTheText)
{
    const struct {
        QList<QByteArray> chunks;
        QByteArray text;
        QByteArray answer;
    } cases[] = {
        // WILL ECHO, WILL SUPPRESS-GO-AHEAD: DONT; DO NAWS, DO TERMINAL-TYPE: WONT.
        { { "\xff\xfb\x01\xff\xfb\x03\xff\xfd\x1f\xff\xfd\x18login: " },
            "login: ", "\xff\xfe\x01\xff\xfe\x03\xff\xfc\x1f\xff\xfc\x18" },
        // A command cut by the read is still one command.
        { { "a\xff", "\xfd",
              "\x1f"
              "b" },
            "ab", "\xff\xfc\x1f" },
        // A doubled 0xFF is one character; go-ahead and subnegotiation vanish without answer.
        { { "\xff\xff tnx\xff\xf9\xff\xfa\x18\x01\xff\xf0!" }, "\xff tnx!", "" },
        // Refusals and a node's own WONT/DONT need no answer.
        { { "\xff\xfc\x01\xff\xfe\x03x" }, "x", "" },
    };
    for (const auto& c : cases) {
        TelnetSession t;
        QByteArray text, answer;
        for (const QByteArray& chunk : c.chunks) {
            const TelnetSession::Received r = t.receive(chunk);
            text += r.text;
            answer += r.answer;
        }
        EXPECT_EQ(text, c.text) << c.chunks.join('|').toHex(' ').toStdString();
        EXPECT_EQ(answer, c.answer) << c.chunks.join('|').toHex(' ').toStdString();
    }
}

TEST(TelnetSession, DoublesTheCommandByteInWhatWeSend)
{
    TelnetSession t;
    EXPECT_EQ(t.encode("dx 144174.0 SP9ABC \xff\r\n"), QByteArray("dx 144174.0 SP9ABC \xff\xff\r\n"));
    EXPECT_EQ(t.encode("bye\r\n"), QByteArray("bye\r\n"));
}
