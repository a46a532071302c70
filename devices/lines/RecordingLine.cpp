#include "devices/lines/RecordingLine.h"

bool RecordingLine::setOutput()
{
    const std::lock_guard lock(mutex_);
    ++outputCalls_;
    return true;
}

bool RecordingLine::setState(bool on)
{
    const auto now = Clock::now();
    const std::lock_guard lock(mutex_);
    edges_.push_back({ now, on });
    state_ = on;
    return true;
}

std::vector<RecordingLine::Edge> RecordingLine::edges() const
{
    const std::lock_guard lock(mutex_);
    return edges_;
}

int RecordingLine::outputCalls() const
{
    const std::lock_guard lock(mutex_);
    return outputCalls_;
}

bool RecordingLine::state() const
{
    const std::lock_guard lock(mutex_);
    return state_;
}

void RecordingLine::clear()
{
    const std::lock_guard lock(mutex_);
    edges_.clear();
    outputCalls_ = 0;
}
