#include "devices/rig/LinePace.h"

#include "devices/link/SerialSettings.h"

namespace LinePace {

qint64 microseconds(const QString& settingsText, qint64 bytes)
{
    const SerialSettings s = SerialSettings::parse(settingsText).value_or(SerialSettings {});
    // Stop bits in halves so 1.5 stays exact.
    const int stopHalves = s.stopBits == SerialSettings::StopBits::One ? 2
        : s.stopBits == SerialSettings::StopBits::OneAndHalf           ? 3
                                                                       : 4;
    const int parityBits = s.parity == SerialSettings::Parity::None ? 0 : 1;
    const qint64 halfBitsPerByte = 2 * (1 + s.dataBits + parityBits) + stopHalves;
    const qint64 baud = qMax<qint32>(s.baudRate, 1);
    return (bytes * halfBitsPerByte * 1000000 + 2 * baud - 1) / (2 * baud);
}

} // namespace LinePace
