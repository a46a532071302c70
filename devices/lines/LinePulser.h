#pragma once
// Short motor pulses on an output line (the automatic elevation step), timed on a thread of
// their own with a monotonic clock, so a pulse lasts its length whatever the window is doing
// and the window never sleeps. A pulse can be cut short: the hand takes over at once.
#include "devices/lines/OutputLines.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

class LinePulser {
public:
    explicit LinePulser(OutputLines& lines);
    // Ends the pulse under way (its line off) and drops those not yet begun.
    ~LinePulser();
    LinePulser(const LinePulser&) = delete;
    LinePulser& operator=(const LinePulser&) = delete;

    // Queues one pulse: output, on, the length, off (port 0 of the module).
    void pulse(quint8 line, std::chrono::milliseconds length);
    // Drops the queued pulses and ends the running one now: its line is off when this returns,
    // switched by the caller's thread, whenever the pulse thread next runs.
    void cancel();
    // Blocks until every queued pulse has ended (for tests and shutdown).
    void waitIdle();

private:
    struct Request {
        quint8 line;
        std::chrono::milliseconds length;
    };
    void run();

    OutputLines& lines_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable idle_;
    std::deque<Request> queue_;
    bool busy_ = false;
    bool cut_ = false; // the running pulse is to end now
    int onLine_ = -1; // the line the running pulse holds on, -1 when none
    bool stopping_ = false;
    std::thread thread_;
};
