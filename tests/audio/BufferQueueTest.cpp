#include "audio/BufferQueue.h"

#include <gtest/gtest.h>

namespace {
QByteArray counting(int from, int count)
{
    QByteArray b;
    for (int i = 0; i < count; ++i)
        b.append(static_cast<char>((from + i) & 0x7F));
    return b;
}
} // namespace

TEST(BufferQueue, CutsTheStreamIntoBuffersBackToBack)
{
    BufferQueue q(10);
    int sent = 0;
    for (int size : { 3, 7, 1, 15, 4, 9 }) { // 39 bytes in uneven pieces
        q.append(counting(sent, size));
        sent += size;
    }
    QByteArray all, b;
    while (q.take(b))
        all += b;
    EXPECT_EQ(all, counting(0, 30)); // no byte lost or repeated between buffers
    q.append(counting(39, 1));
    ASSERT_TRUE(q.take(b));
    EXPECT_EQ(b, counting(30, 10));
    EXPECT_FALSE(q.take(b));
}

TEST(BufferQueue, DropsTheOldestWhenTheReaderFallsBehind)
{
    BufferQueue q(4, 2);
    q.append(counting(0, 17));
    EXPECT_EQ(q.dropped(), 2);
    QByteArray b;
    ASSERT_TRUE(q.take(b));
    EXPECT_EQ(b, counting(8, 4));
    q.clear();
    EXPECT_FALSE(q.take(b));
    EXPECT_EQ(q.pendingBytes(), 0);
}
