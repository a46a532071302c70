// The serial link through a pseudo-terminal: a rotator-style query and answer ("AI1;" out,
// "045;" back) through QtSerialLink, against the same exchange on the raw file descriptors.
#include "devices/link/QtSerialLink.h"
#include "sim/pty/PtyPair.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

void readExactly(int fd, char* buf, int n)
{
    for (int got = 0; got < n;) {
        pollfd p { fd, POLLIN, 0 };
        poll(&p, 1, 1000);
        const ssize_t r = read(fd, buf + got, size_t(n - got));
        if (r > 0)
            got += int(r);
    }
}

// Reference: the same exchange with plain read and write on the two ends.
void BM_RawPtyRoundTrip(benchmark::State& state)
{
    PtyPair pty;
    char buf[8];
    for (auto _ : state) {
        write(pty.slaveFd(), "AI1;", 4);
        readExactly(pty.masterFd(), buf, 4);
        write(pty.masterFd(), "045;", 4);
        readExactly(pty.slaveFd(), buf, 4);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RawPtyRoundTrip)->Unit(benchmark::kMicrosecond);

void BM_QtSerialLinkRoundTrip(benchmark::State& state)
{
    PtyPair pty;
    QtSerialLink link;
    if (!link.open(pty.slavePath(), QStringLiteral("4800,n,8,1"))) {
        state.SkipWithError(qPrintable(link.errorText()));
        return;
    }
    char buf[8];
    for (auto _ : state) {
        link.write("AI1;");
        while (link.bytesToWrite() > 0) // the port writes from the event loop
            QCoreApplication::processEvents();
        readExactly(pty.masterFd(), buf, 4);
        write(pty.masterFd(), "045;", 4);
        QByteArray reply;
        while (reply.size() < 4) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            reply += link.readAll();
        }
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_QtSerialLinkRoundTrip)->Unit(benchmark::kMicrosecond);

// A long NMEA-sized stream from the device end into the link.
void BM_QtSerialLinkReceiveThroughput(benchmark::State& state)
{
    PtyPair pty;
    fcntl(pty.masterFd(), F_SETFL, fcntl(pty.masterFd(), F_GETFL) | O_NONBLOCK);
    QtSerialLink link;
    link.open(pty.slavePath(), QStringLiteral("9600,n,8,1"));
    const QByteArray chunk(1024, 'N');
    for (auto _ : state) {
        qint64 got = 0;
        qint64 sent = 0;
        while (got < 64 * 1024) {
            if (sent < 64 * 1024) {
                const ssize_t w = write(pty.masterFd(), chunk.constData(), size_t(chunk.size()));
                if (w > 0)
                    sent += w;
            }
            QCoreApplication::processEvents();
            got += link.readAll().size();
        }
    }
    state.SetBytesProcessed(state.iterations() * 64 * 1024);
}
BENCHMARK(BM_QtSerialLinkReceiveThroughput)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
