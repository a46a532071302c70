// Keys a 40-character text at 50 ms a unit on the keying thread and measures every edge of the
// key line against its planned time, while the window's event loop handles a posted event
// every 25 ms. Reference in the same run: the same text keyed by plain relative sleeps (one
// sleep per element and gap, nothing correcting the time spent in the calls).
#include "devices/keyer/MorseCode.h"
#include "devices/keyer/MorseKeyer.h"
#include "devices/lines/OutputLines.h"
#include "devices/lines/RealtimePriority.h"
#include "devices/lines/RecordingLine.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
const QString Text = QStringLiteral("cq cq de n0call n0call pse k vvv test 73");
constexpr int UnitMs = 50;

struct Stats {
    double median = 0, p99 = 0, max = 0, mean = 0;
};

Stats stats(std::vector<double> v)
{
    Stats s;
    if (v.empty())
        return s;
    std::sort(v.begin(), v.end());
    s.median = v[v.size() / 2];
    s.p99 = v[std::min(v.size() - 1, static_cast<size_t>(v.size() * 0.99))];
    s.max = v.back();
    for (double x : v)
        s.mean += x;
    s.mean /= double(v.size());
    return s;
}

// Planned edge times in ms after the start.
std::vector<double> plannedEdges()
{
    std::vector<double> edges;
    double t = 0;
    for (QChar c : Text)
        for (const Morse::Step& s : Morse::textCharacter(c, UnitMs)) {
            if (s.keyDown)
                edges.push_back(t);
            t += s.ms;
            if (s.keyDown)
                edges.push_back(t);
        }
    return edges;
}

std::vector<double> errors(const std::vector<RecordingLine::Edge>& edges, Clock::time_point origin)
{
    const std::vector<double> planned = plannedEdges();
    std::vector<double> e;
    for (size_t i = 0; i < edges.size() && i < planned.size(); ++i)
        e.push_back(
            std::abs(std::chrono::duration<double, std::milli>(edges[i].at - origin).count() - planned[i]));
    return e;
}

class LatencyProbe : public QObject {
public:
    std::vector<double> latencies;
    void post() { QCoreApplication::postEvent(this, new Stamped(Clock::now())); }

protected:
    struct Stamped : QEvent {
        explicit Stamped(Clock::time_point t)
            : QEvent(QEvent::User)
            , at(t)
        {
        }
        Clock::time_point at;
    };
    void customEvent(QEvent* e) override
    {
        latencies.push_back(
            std::chrono::duration<double, std::milli>(Clock::now() - static_cast<Stamped*>(e)->at).count());
    }
};

// The reference keyer: a relative sleep for every element and gap.
std::vector<RecordingLine::Edge> keyWithSleeps(Clock::time_point& origin)
{
    OutputLines lines;
    auto key = std::make_shared<RecordingLine>();
    lines.setLine(OutputLines::Role::Key, key);
    std::thread t([&] {
        RealtimePriority::raiseCurrentThread();
        origin = Clock::now();
        for (QChar c : Text)
            for (const Morse::Step& s : Morse::textCharacter(c, UnitMs)) {
                if (s.keyDown)
                    lines.UsbSetIOState(0, OutputLines::KeyLine, 1);
                std::this_thread::sleep_for(std::chrono::milliseconds(s.ms));
                if (s.keyDown)
                    lines.UsbSetIOState(0, OutputLines::KeyLine, 0);
            }
    });
    t.join();
    return key->edges();
}

void print(const char* name, const Stats& s)
{
    std::printf("  %-22s median %6.3f ms  p99 %6.3f ms  max %7.3f ms  mean %6.3f ms\n", name, s.median, s.p99,
        s.max, s.mean);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    OutputLines lines;
    auto key = std::make_shared<RecordingLine>();
    lines.setLine(OutputLines::Role::Key, key);
    MorseKeyer keyer(lines);
    LatencyProbe probe;
    QTimer poster;
    QObject::connect(&poster, &QTimer::timeout, &probe, &LatencyProbe::post);
    poster.start(25);

    Clock::time_point end;
    keyer.start(UnitMs, Text, false, [&] {
        end = Clock::now();
        QMetaObject::invokeMethod(&app, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    app.exec();
    keyer.wait();
    poster.stop();

    const double ideal = double(Morse::textMs(Text, UnitMs));
    const double took = std::chrono::duration<double, std::milli>(end - keyer.origin()).count();
    const auto edges = key->edges();
    const Stats keyed = stats(errors(edges, keyer.origin()));
    const Stats latency = stats(probe.latencies);

    Clock::time_point refOrigin;
    const auto refEdges = keyWithSleeps(refOrigin);
    const Stats reference = stats(errors(refEdges, refOrigin));
    const double refTook = std::chrono::duration<double, std::milli>(refEdges.back().at - refOrigin).count();
    const double idealLastEdge = plannedEdges().back();

    std::printf("bench_keyer: %lld characters at %d ms a unit, %zu edges, real-time priority %s\n",
        static_cast<long long>(Text.size()), UnitMs, edges.size(),
        keyer.realtime() ? "granted" : "not granted (ordinary thread)");
    std::printf(
        "  whole text: %.1f ms, ideal %.0f ms (%+.3f %%)\n", took, ideal, (took - ideal) / ideal * 100);
    print("edge error, keyer", keyed);
    print("edge error, sleeps", reference);
    std::printf("  reference last edge drift: %+.1f ms over %.0f ms; p99 ratio sleeps/keyer %.0fx\n",
        refTook - idealLastEdge, idealLastEdge, keyed.p99 > 0 ? reference.p99 / keyed.p99 : 0.0);
    std::printf(
        "  posted event handled by the window while keying: median %.3f ms  max %.3f ms  (%zu events)\n",
        latency.median, latency.max, probe.latencies.size());
    return 0;
}
