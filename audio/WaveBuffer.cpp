#include "audio/WaveBuffer.h"

#include <cstring>

void WaveBuffer::setSample(int i, qint16 value)
{
    std::memcpy(bytes_.data() + BlockAlign * i, &value, sizeof value);
}
