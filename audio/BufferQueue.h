#pragma once
// Cuts a stream of recorded bytes into whole buffers back to back, so no sample falls between
// two buffers. Keeps at most a few finished buffers; when the reader falls behind, the oldest go.
#include <QByteArray>
#include <deque>

class BufferQueue {
public:
    explicit BufferQueue(int bufferBytes, int maxBuffers = 4)
        : bufferBytes_(bufferBytes)
        , maxBuffers_(maxBuffers)
    {
    }

    void append(const QByteArray& bytes);
    // The oldest finished buffer into out; false when none is finished.
    bool take(QByteArray& out);
    void clear();

    int pendingBytes() const { return static_cast<int>(pending_.size()); }
    long long dropped() const { return dropped_; }

private:
    int bufferBytes_;
    int maxBuffers_;
    QByteArray pending_;
    std::deque<QByteArray> done_;
    long long dropped_ = 0;
};
