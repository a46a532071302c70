#pragma once
// An output line that remembers every call with the time of a monotonic clock: for checking
// the keyer's timing, and for watching what the elevation motor would do without hardware.
#include "devices/lines/DigitalLine.h"

#include <chrono>
#include <mutex>
#include <vector>

class RecordingLine : public DigitalLine {
public:
    using Clock = std::chrono::steady_clock;
    struct Edge {
        Clock::time_point at;
        bool on;
    };

    bool setOutput() override;
    bool setState(bool on) override;
    QString description() const override { return QStringLiteral("recording"); }

    std::vector<Edge> edges() const;
    int outputCalls() const;
    bool state() const;
    void clear();

private:
    mutable std::mutex mutex_;
    std::vector<Edge> edges_;
    int outputCalls_ = 0;
    bool state_ = false;
};
