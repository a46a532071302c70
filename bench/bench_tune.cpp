// Holding "QRG up" for 2 s with the rig on pseudo-terminals whose far ends take the bytes at
// the line's own rate (9600 baud, 10 bits a byte): passes per second and the most bytes ever
// waiting (in the serial port's buffer and the terminal's queue). Reference in the same run:
// the same passes driven as fast as the event loop turns, without pacing.
#include "core/Prompts.h"
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "devices/link/StationPorts.h"
#include "devices/rig/RigController.h"
#include "sim/pty/PtyPair.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr int HoldMs = 2000;
constexpr double LineBytesPerSecond = 960.0; // 9600 baud, 8N1

// Bytes the far end has not read yet.
int unread(const PtyPair& pty)
{
    int n = 0;
    ::ioctl(pty.masterFd(), FIONREAD, &n);
    return n;
}

// The rig's end of a line: takes bytes no faster than the line carries them.
struct LineReader {
    PtyPair& pty;
    QElapsedTimer clock;
    double taken = 0;
    explicit LineReader(PtyPair& p)
        : pty(p)
    {
        clock.start();
    }
    void poll()
    {
        const double allowed = clock.nsecsElapsed() / 1e9 * LineBytesPerSecond - taken;
        int n = std::min(static_cast<int>(allowed), unread(pty));
        char buf[4096];
        while (n > 0) {
            const ssize_t r = ::read(pty.masterFd(), buf, std::min<size_t>(sizeof buf, size_t(n)));
            if (r <= 0)
                break;
            taken += r;
            n -= int(r);
        }
    }
};

struct Result {
    qint64 passes = 0;
    qint64 mostWaiting = 0;
};

struct Bench {
    RecordingPrompts prompts;
    Station station { prompts };
    PtyPair pty1, pty2;
    StationPorts ports { makeQtSerialLink };
    Bench()
    {
        station.settings.setText(Setting::Com1Port, pty1.slavePath());
        station.settings.setText(Setting::Com2Port, pty2.slavePath());
        station.settings.setText(Setting::Com1Settings, QStringLiteral("9600,n,8,1"));
        station.settings.setText(Setting::Com2Settings, QStringLiteral("9600,n,8,1"));
        station.rigPortName = QStringLiteral("Com1");
        ports.com(1).open(pty1.slavePath(), QStringLiteral("9600,n,8,1"));
        ports.com(2).open(pty2.slavePath(), QStringLiteral("9600,n,8,1"));
    }
    qint64 waiting()
    {
        return ports.com(1).bytesToWrite() + ports.com(2).bytesToWrite() + unread(pty1) + unread(pty2);
    }

    // Runs `start`, samples every millisecond while the line readers drain, until `done`.
    template <typename Start, typename Done> qint64 run(Start start, Done done)
    {
        LineReader r1(pty1), r2(pty2);
        qint64 most = 0;
        QTimer sampler;
        sampler.setTimerType(Qt::PreciseTimer);
        QObject::connect(&sampler, &QTimer::timeout, [&] {
            most = std::max(most, waiting());
            r1.poll();
            r2.poll();
        });
        sampler.start(1);
        start();
        QEventLoop loop;
        QTimer check;
        QObject::connect(&check, &QTimer::timeout, [&] {
            if (done())
                loop.quit();
        });
        check.start(5);
        loop.exec();
        return most;
    }
};

Result paced()
{
    Bench b;
    RigController rig(b.station, b.ports);
    rig.setCounter(14410000);
    rig.setStepOption(2);
    Result res;
    QObject::connect(&rig, &RigController::passSent,
        [&](qint64) { res.mostWaiting = std::max(res.mostWaiting, b.waiting()); });
    bool ended = false;
    QObject::connect(&rig, &RigController::tuningEnded, [&] { ended = true; });
    const qint64 most = b.run(
        [&] {
            rig.startTuning(+1);
            QTimer::singleShot(HoldMs, &rig, &RigController::stopTuning);
        },
        [&] { return ended; });
    res.passes = rig.passes();
    res.mostWaiting = std::max(res.mostWaiting, most);
    return res;
}

Result unpaced()
{
    Bench b;
    RigController rig(b.station, b.ports);
    qint64 counter = 14410000;
    b.station.frequencyText = QString::number(counter);
    Result res;
    QTimer spin; // every turn of the event loop, as a loop that only yields would
    QObject::connect(&spin, &QTimer::timeout, [&] {
        counter += 10;
        rig.SendFreq(b.station.frequencyText);
        b.station.frequencyText = QString::number(counter);
        ++res.passes;
        res.mostWaiting = std::max(res.mostWaiting, b.waiting());
    });
    QElapsedTimer t;
    const qint64 most = b.run(
        [&] {
            t.start();
            spin.start(0);
        },
        [&] {
            if (t.elapsed() < HoldMs)
                return false;
            spin.stop();
            return true;
        });
    res.mostWaiting = std::max(res.mostWaiting, most);
    return res;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int passBytes = 13; // 8 characters of plain text on Com2, 5 bytes on Com1
    const Result p = paced();
    const Result u = unpaced();
    std::printf(
        "bench_tune: hold \"QRG up\" for %d ms, rig on Com1 (binary), both lines 9600,n,8,1\n", HoldMs);
    std::printf("  paced by the line : %6.1f passes/s, most bytes waiting %5lld (%.2f passes of %d bytes)\n",
        p.passes * 1000.0 / HoldMs, static_cast<long long>(p.mostWaiting), double(p.mostWaiting) / passBytes,
        passBytes);
    std::printf("  unpaced reference : %6.1f passes/s, most bytes waiting %5lld (%.0f passes)\n",
        u.passes * 1000.0 / HoldMs, static_cast<long long>(u.mostWaiting), double(u.mostWaiting) / passBytes);
    std::printf("  line capacity     : %6.1f passes/s on Com2 (8 bytes a pass)\n", LineBytesPerSecond / 8);
    return p.mostWaiting <= passBytes ? 0 : 1;
}
