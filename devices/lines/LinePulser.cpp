#include "devices/lines/LinePulser.h"

#include "devices/lines/RealtimePriority.h"

LinePulser::LinePulser(OutputLines& lines)
    : lines_(lines)
    , thread_([this] { run(); })
{
}

LinePulser::~LinePulser()
{
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        queue_.clear();
    }
    wake_.notify_all();
    thread_.join();
}

void LinePulser::pulse(quint8 line, std::chrono::milliseconds length)
{
    {
        const std::lock_guard lock(mutex_);
        queue_.push_back({ line, length });
    }
    wake_.notify_all();
}

void LinePulser::cancel()
{
    {
        const std::lock_guard lock(mutex_);
        queue_.clear();
        if (!busy_)
            return;
        cut_ = true;
        if (onLine_ >= 0) {
            lines_.UsbSetIOState(OutputLines::ModulePort, quint8(onLine_), 0);
            onLine_ = -1;
        }
    }
    wake_.notify_all();
}

void LinePulser::waitIdle()
{
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] { return queue_.empty() && !busy_; });
}

void LinePulser::run()
{
    RealtimePriority::raiseCurrentThread();
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
        if (stopping_)
            break;
        const Request r = queue_.front();
        queue_.pop_front();
        busy_ = true;
        cut_ = false;
        lock.unlock();

        lines_.UsbSetIODir(OutputLines::ModulePort, r.line, 1);
        lock.lock();
        // On and off are switched under the lock, so cancel() can take the line off itself.
        if (!cut_ && !stopping_ && lines_.UsbSetIOState(OutputLines::ModulePort, r.line, 1)) {
            onLine_ = r.line;
            const auto end = std::chrono::steady_clock::now() + r.length;
            wake_.wait_until(lock, end, [this] { return cut_ || stopping_; });
            if (onLine_ >= 0)
                lines_.UsbSetIOState(OutputLines::ModulePort, r.line, 0);
            onLine_ = -1;
        }
        busy_ = false;
        idle_.notify_all();
    }
    busy_ = false;
    idle_.notify_all();
}
