#include "devices/keyer/MorseKeyer.h"

#include "devices/lines/OutputLines.h"
#include "devices/lines/RealtimePriority.h"

MorseKeyer::MorseKeyer(OutputLines& lines)
    : lines_(lines)
{
}

MorseKeyer::~MorseKeyer()
{
    abort();
    wait();
}

bool MorseKeyer::start(int unitMs, const QString& text, bool loop, std::function<void()> finished)
{
    if (running_)
        return false;
    wait(); // the previous thread has ended its work; collect it
    setText(text);
    loop_ = loop;
    loopStop_ = false;
    abort_ = false;
    passes_ = 0;
    running_ = true;
    thread_ = std::thread([this, unitMs, finished = std::move(finished)] { run(unitMs, finished); });
    return true;
}

void MorseKeyer::setText(const QString& text)
{
    const std::lock_guard lock(mutex_);
    text_ = text;
}

QString MorseKeyer::text() const
{
    const std::lock_guard lock(mutex_);
    return text_;
}

void MorseKeyer::abort()
{
    {
        const std::lock_guard lock(mutex_);
        abort_ = true;
    }
    abortWake_.notify_all();
}

void MorseKeyer::wait()
{
    if (thread_.joinable() && thread_.get_id() != std::this_thread::get_id())
        thread_.join();
}

MorseKeyer::Clock::time_point MorseKeyer::origin() const
{
    const std::lock_guard lock(mutex_);
    return origin_;
}

bool MorseKeyer::pause(Clock::time_point until)
{
    std::unique_lock lock(mutex_);
    // sleep_until on a steady clock; woken early only by abort
    return !abortWake_.wait_until(lock, until, [this] { return abort_.load(); });
}

void MorseKeyer::run(int unitMs, std::function<void()> finished)
{
    realtime_ = RealtimePriority::raiseCurrentThread();
    auto key = [this](bool down) {
        lines_.UsbSetIOState(OutputLines::ModulePort, OutputLines::KeyLine, down ? 1 : 0);
    };
    Clock::time_point due = Clock::now();
    {
        const std::lock_guard lock(mutex_);
        origin_ = due;
    }
    bool aborted = false;
    bool empty = false;
    do {
        const Clock::time_point passStart = due;
        for (qsizetype i = 0; !aborted; ++i) {
            const QString t = text(); // the length is read again for every character
            if (i >= t.size())
                break;
            for (const Morse::Step& step : Morse::textCharacter(t.at(i), unitMs)) {
                if (!step.keyDown) {
                    due += std::chrono::milliseconds(step.ms);
                    continue;
                }
                if (!pause(due)) {
                    aborted = true;
                    break;
                }
                key(true);
                due += std::chrono::milliseconds(step.ms);
                const bool whole = pause(due);
                key(false);
                if (!whole) {
                    aborted = true;
                    break;
                }
            }
        }
        if (!aborted && !pause(due)) // the closing gap belongs to the pass
            aborted = true;
        if (!aborted)
            ++passes_;
        empty = due == passStart; // an empty text would loop without end
    } while (!aborted && !empty && loop_ && !loopStop_);

    running_ = false;
    if (finished)
        finished();
}
