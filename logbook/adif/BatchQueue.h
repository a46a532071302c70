#pragma once
// Batches handed from one thread to the next in order, at most `capacity` waiting, so a fast
// producer stays only a few batches ahead. The producer says which batch is its last; a stop
// request wakes a waiting producer or consumer.
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <stop_token>
#include <vector>

template <typename T> class BatchQueue {
public:
    explicit BatchQueue(std::size_t capacity)
        : capacity_(capacity)
    {
    }

    // False when stopped before there was room.
    bool push(std::vector<T> batch, bool last, std::stop_token stop)
    {
        std::unique_lock lock(mutex_);
        if (!changed_.wait(lock, stop, [this] { return ready_.size() < capacity_; }))
            return false;
        ready_.push_back(std::move(batch));
        finished_ = last;
        changed_.notify_all();
        return true;
    }

    // The next batch; false after the last one, or when stopped.
    bool pop(std::vector<T>& batch, std::stop_token stop = {})
    {
        std::unique_lock lock(mutex_);
        if (!changed_.wait(lock, stop, [this] { return !ready_.empty() || finished_; }) || ready_.empty())
            return false;
        batch = std::move(ready_.front());
        ready_.pop_front();
        changed_.notify_all();
        return true;
    }

private:
    const std::size_t capacity_;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::deque<std::vector<T>> ready_;
    bool finished_ = false; // the last batch is in ready_
};
