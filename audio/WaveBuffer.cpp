#include "audio/WaveBuffer.h"

#include <cstring>

double WaveBuffer::ReadSample(int i) const
{
    qint16 v = 0;
    std::memcpy(&v, bytes_.constData() + BlockAlign * i, sizeof v);
    return v / 32768.0;
}

void WaveBuffer::setSample(int i, qint16 value)
{
    std::memcpy(bytes_.data() + BlockAlign * i, &value, sizeof value);
}
