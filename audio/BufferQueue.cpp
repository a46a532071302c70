#include "audio/BufferQueue.h"

void BufferQueue::append(const QByteArray& bytes)
{
    pending_.append(bytes);
    qsizetype used = 0;
    while (pending_.size() - used >= bufferBytes_) {
        done_.push_back(pending_.mid(used, bufferBytes_));
        used += bufferBytes_;
        if (static_cast<int>(done_.size()) > maxBuffers_) {
            done_.pop_front();
            ++dropped_;
        }
    }
    if (used > 0)
        pending_.remove(0, used);
}

bool BufferQueue::take(QByteArray& out)
{
    if (done_.empty())
        return false;
    out = std::move(done_.front());
    done_.pop_front();
    return true;
}

void BufferQueue::clear()
{
    pending_.clear();
    done_.clear();
}
