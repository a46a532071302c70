// Node transcripts (tests/cluster/transcripts) played by a node on 127.0.0.1 to the cluster
// window in small pieces: the telnet answers, the automatic login, the clean terminal text
// and every spot.
#include "core/ExtensionSettings.h"
#include "tests/cluster/WindowFixture.h"

#include <QFile>

namespace {

// The transcript's bytes before and after its "@login" line.
std::pair<QByteArray, QByteArray> loadTranscript(const QString& name)
{
    QFile in(QStringLiteral(KESTREL_CLUSTER_TRANSCRIPTS "/") + name);
    if (!in.open(QIODevice::ReadOnly))
        return {};
    QByteArray parts[2];
    int part = 0;
    for (const QByteArray& line : in.readAll().split('\n')) {
        if (line.startsWith('#'))
            continue;
        if (line == "@login") {
            part = 1;
            continue;
        }
        for (qsizetype i = 0; i < line.size(); ++i) {
            const char c = line[i];
            if (c != '\\' || i + 1 == line.size()) {
                parts[part] += c;
                continue;
            }
            const char e = line[++i];
            if (e == 'x') {
                parts[part] += char(line.mid(i + 1, 2).toInt(nullptr, 16));
                i += 2;
            } else {
                parts[part] += e == 'r' ? '\r' : e == 'n' ? '\n' : e == 'e' ? '\x1b' : e == 'a' ? '\a' : e;
            }
        }
    }
    return { parts[0], parts[1] };
}

void sendInPieces(TestNode& node, const QByteArray& bytes, int piece)
{
    for (qsizetype at = 0; at < bytes.size(); at += piece) {
        node.send(bytes.mid(at, piece));
        QTest::qWait(1); // each piece its own read
    }
}

} // namespace

TEST(ClusterTranscript, AColourNodeShowsCleanTextAndEverySpot)
{
    WindowFixture f;
    f.station.settings.setText(Setting::MyCall, QStringLiteral("DL1KES"));
    SaveStationConfig(f.station);
    ExtensionSettings::setValue(ExtensionKey::ClusterAutoLogin, QStringLiteral("true"));
    const auto [greeting, session] = loadTranscript(QStringLiteral("colour-node.txt"));
    ASSERT_FALSE(greeting.isEmpty());
    f.open();

    // Pieces of 5 bytes cut telnet commands, UTF-8 characters and colour sequences apart.
    sendInPieces(f.node, greeting, 5);
    ASSERT_TRUE(
        f.node.waitForReceived(QByteArray("\xff\xfe\x01\xff\xfe\x03\xff\xfc\x1f\xff\xfc\x18") + "DL1KES\r\n"))
        << f.node.received.toHex(' ').toStdString();
    sendInPieces(f.node, session, 5);
    ASSERT_TRUE(f.waitForTerminal(QStringLiteral("dxspider >")));
    EXPECT_TRUE(f.node.waitForReceived(
        QByteArray("\xff\xfe\x01\xff\xfe\x03\xff\xfc\x1f\xff\xfc\x18") + "DL1KES\r\n" + "\xff\xfc\x01"));

    EXPECT_EQ(f.terminalText(),
        "\n"
        "Welcome to the DB0XYZ DX cluster, Grüße aus Köln\n"
        "\n"
        "login: \n"
        "Hello DL1KES, this is DB0XYZ in Köln, JO30LW\n"
        "DX de OK1XYZ:    144174.0  SP9ABC       JO90KA<TR>JO70FD               1234Z\n"
        "DX de PA0ABC-2:  10368100.0  DL0ABC/B     beacon 559                     1235Z JO31\n"
        "DX de DL1ABC:      50110.0  VK4ABC       Grüße an Jörg, 73              1236Z\n"
        "DX de G4ABC:       3503.5  ZL2IFB       CW                             1237Z\n"
        "DX de SM7ABC:     14025.0  JA1ABC       ÿ tnx Łukasz              1238Z\n"
        "DL1KES de DB0XYZ 23-Nov-2026 1238Z dxspider >\n");
    ASSERT_TRUE(QTest::qWaitFor([&] { return f.spotRows() == 5; }, 3000));
    QStringList calls;
    for (int r = 0; r < f.spotRows(); ++r)
        calls << f.cell(r, 2);
    calls.sort();
    EXPECT_EQ(calls, QStringList({ "DL0ABC/B", "JA1ABC", "SP9ABC", "VK4ABC", "ZL2IFB" }));
}
