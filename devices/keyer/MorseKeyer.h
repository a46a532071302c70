#pragma once
// Keys a text on the CW key line (port 0, line 16) from a thread of its own, every edge at its
// planned time on a monotonic clock, so element lengths do not drift or stretch with the
// window's load. The window starts it, may change the text, the loop switch and ask for the
// loop to stop after the current pass; it learns of the end through the finished callback.
#include "devices/keyer/MorseCode.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

class OutputLines;

class MorseKeyer {
public:
    using Clock = std::chrono::steady_clock;

    explicit MorseKeyer(OutputLines& lines);
    // Stops at once with the key up.
    ~MorseKeyer();
    MorseKeyer(const MorseKeyer&) = delete;
    MorseKeyer& operator=(const MorseKeyer&) = delete;

    // Sends the text once, and again while the loop switch is on and no stop was asked.
    // `finished` runs on the keying thread when the last gap has passed. False when already
    // sending.
    bool start(int unitMs, const QString& text, bool loop, std::function<void()> finished = {});
    // Read again before every character, so an edit shows at once.
    void setText(const QString& text);
    void setLoop(bool on) { loop_ = on; }
    // Ends the repetition after the current pass.
    void requestLoopStop() { loopStop_ = true; }
    // Ends at once: key up, no further character.
    void abort();
    bool isRunning() const { return running_; }
    // Blocks until the keying thread has ended.
    void wait();

    // When the planned edges of the last start are counted from, and how many passes ended.
    Clock::time_point origin() const;
    int passes() const { return passes_; }
    // Whether the keying thread got its real-time priority.
    bool realtime() const { return realtime_; }

private:
    void run(int unitMs, std::function<void()> finished);
    QString text() const;
    bool pause(Clock::time_point until); // false when aborted

    OutputLines& lines_;
    mutable std::mutex mutex_;
    std::condition_variable abortWake_;
    QString text_;
    Clock::time_point origin_;
    std::atomic<bool> loop_ = false;
    std::atomic<bool> loopStop_ = false;
    std::atomic<bool> abort_ = false;
    std::atomic<bool> running_ = false;
    std::atomic<int> passes_ = 0;
    std::atomic<bool> realtime_ = false;
    std::thread thread_;
};
