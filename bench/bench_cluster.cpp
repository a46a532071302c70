// Spot lines per second: parsed alone (the reference), through the terminal text and the
// parser, and end to end: sent by a node on 127.0.0.1, received by the cluster window, shown
// in its terminal and spot table while the window updates.
#include "cluster/ClusterClient.h"
#include "cluster/Spot.h"
#include "cluster/TerminalText.h"
#include "core/Station.h"
#include "core/StationConfig.h"
#include "tests/support/TempDir.h"
#include "ui/cluster/ClusterWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTableView>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace {

QByteArray spotLines(int count)
{
    static const char* const spotters[]
        = { "W3LPL", "OK1XYZ-#", "DL1ABC", "PA0ABC-2", "K1TTT", "G4ABC", "SM7ABC" };
    static const char* const calls[]
        = { "JA1ABC", "SP9ABC", "OZ7IGY/B", "VK4ABC", "ZL2IFB", "EA8XYZ", "K2ABC/P" };
    static const double kHz[]
        = { 14025.0, 144174.0, 1296200.0, 50110.0, 3503.5, 21074.0, 432200.0, 10368100.0 };
    static const char* const comments[] = { "CQ CQ", "JO90KA<TR>JO70FD", "559 QSB", "tnx qso 73", "FT8 -12dB",
        "beacon via rainscatter <RS> JO31", "" };
    QByteArray out;
    out.reserve(count * 80);
    for (int i = 0; i < count; ++i) {
        const QByteArray spotter = QByteArray(spotters[i % 7]) + ':';
        const QString line
            = QString::asprintf("DX de %-10s%10.1f  %-12s %-30s %02d%02dZ", spotter.constData(), kHz[i % 8],
                  calls[(i / 3) % 7], comments[(i / 7) % 7], (i / 60) % 24, i % 60)
            + ((i % 2) ? QStringLiteral(" JO70") : QString());
        out += line.toLatin1();
        out += "\r\n";
    }
    return out;
}

double parseOnly(const QStringList& lines)
{
    QElapsedTimer t;
    t.start();
    int parsed = 0;
    for (int round = 0; round < 5; ++round) {
        for (const QString& l : lines)
            parsed += parseSpotLine(l).has_value();
    }
    const double seconds = t.nsecsElapsed() / 1e9;
    if (parsed != 5 * lines.size())
        std::printf("warning: only %d of %lld lines parsed\n", parsed, 5LL * lines.size());
    return parsed / seconds;
}

double terminalAndParse(const QByteArray& bytes, int count)
{
    QElapsedTimer t;
    t.start();
    TerminalText term;
    int parsed = 0;
    for (qsizetype at = 0; at < bytes.size(); at += 64 * 1024) {
        term.feed(QByteArrayView(bytes).sliced(at, std::min<qsizetype>(64 * 1024, bytes.size() - at)));
        for (const QString& l : term.takeEndedLines())
            parsed += parseSpotLine(l).has_value();
        term.takeUpdate();
    }
    const double seconds = t.nsecsElapsed() / 1e9;
    if (parsed != count)
        std::printf("warning: %d of %d lines parsed\n", parsed, count);
    return parsed / seconds;
}

struct EndToEnd {
    double linesPerSecond = 0;
    qint64 maxStallMs = 0;
    int updates = 0;
    int rowsShown = 0;
    int terminalLines = 0;
};

// Node and window in one thread, as in the tests: the time runs from the node's write until
// the window update that shows the last spot in the terminal and at the top of the table.
EndToEnd windowRun(const QByteArray& bytes, int count)
{
    TempDir dir;
    RecordingPrompts prompts;
    Station station(prompts);
    LoadStationConfig(station);
    QTcpServer server;
    server.listen(QHostAddress::LocalHost, 0);
    station.settings.setText(Setting::Cluster1Host, "127.0.0.1");
    station.settings.setText(Setting::Cluster1Port, QString::number(server.serverPort()));
    station.settings.setInt16(Setting::ClusterChoice, 1);
    SaveStationConfig(station);

    ClusterWindow window(station);
    window.resize(1100, 640);
    window.show();
    ClusterClient* client = window.client();
    QEventLoop loop;
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&server, &QTcpServer::newConnection, &loop, &QEventLoop::quit);
    QObject::connect(client, &ClusterClient::connectionChanged, &loop, &QEventLoop::quit);
    deadline.start(5000);
    while (deadline.isActive() && !(server.hasPendingConnections() && client->isConnected()))
        loop.exec();
    QTcpSocket* node = server.nextPendingConnection();
    if (!node || !client->isConnected()) {
        std::printf("error: the window did not connect\n");
        return {};
    }
    QObject::disconnect(&server, nullptr, &loop, nullptr);
    QObject::disconnect(client, &ClusterClient::connectionChanged, &loop, nullptr);

    EndToEnd result;
    QElapsedTimer clock;
    qint64 lastBeat = 0;
    QTimer beat;
    beat.setInterval(5);
    QObject::connect(&beat, &QTimer::timeout, [&] {
        result.maxStallMs = std::max(result.maxStallMs, clock.elapsed() - lastBeat);
        lastBeat = clock.elapsed();
    });
    // Connected after the window's own slot, so the view has taken the update already.
    QObject::connect(client, &ClusterClient::terminalChanged, [&] {
        ++result.updates;
        if (client->spotsParsed() >= count)
            loop.quit();
    });
    clock.start();
    beat.start();
    node->write(bytes);
    deadline.start(120000);
    loop.exec();
    const double seconds = clock.nsecsElapsed() / 1e9;
    if (client->spotsParsed() < count)
        std::printf(
            "warning: only %lld of %d spots arrived\n", static_cast<long long>(client->spotsParsed()), count);
    result.linesPerSecond = client->spotsParsed() / seconds;
    result.rowsShown = window.findChild<QTableView*>("tblSpots")->model()->rowCount();
    result.terminalLines = window.findChild<QPlainTextEdit*>("TXTterm")->blockCount();
    return result;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int count = 200000;
    const QByteArray bytes = spotLines(count);
    QStringList lines;
    for (const QByteArray& l : bytes.split('\n')) {
        if (!l.isEmpty())
            lines << QString::fromLatin1(l.chopped(1));
    }

    std::printf("bench_cluster: %d spot lines, %.1f MB\n", count, bytes.size() / 1e6);
    const double parse = parseOnly(lines);
    std::printf("  parse only (reference)            %10.0f lines/s\n", parse);
    const double term = terminalAndParse(bytes, count);
    std::printf(
        "  terminal text + parse             %10.0f lines/s  (%.2f of reference)\n", term, term / parse);
    const EndToEnd e2e = windowRun(bytes, count);
    std::printf("  TCP -> window terminal and table  %10.0f lines/s  (%.2f of reference)\n",
        e2e.linesPerSecond, e2e.linesPerSecond / parse);
    std::printf("  window updates: %d, longest event-loop stall %lld ms, table rows %d, terminal lines %d\n",
        e2e.updates, static_cast<long long>(e2e.maxStallMs), e2e.rowsShown, e2e.terminalLines);
    return 0;
}
