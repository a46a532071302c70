#pragma once
// A simulated sensor box: answers each query 7F 01 87 with one 16-byte frame carrying the
// antenna elevation and the temperature. The elevation drifts slowly between 0.300 and 1.200
// (period three minutes), the temperature by a few degrees around 18 (period ten minutes).
//
// Frame (bytes from 0; "chars" are positions in the hexadecimal text, two digits per byte,
// counted from 1, which is how the main window reads it):
//   byte  0      chars  1-2   7E        start of frame
//   byte  1      chars  3-4   01        box address
//   byte  2      chars  5-6   87        the command answered
//   byte  3      chars  7-8   10        frame length (16)
//   bytes 4-5    chars  9-12  sequence number of the reply, big-endian
//   bytes 6-7    chars 13-16  supply voltage in 10 mV, big-endian (1380 = 13.80 V)
//   bytes 8-9    chars 17-20  raw inclinometer reading, big-endian
//   byte 10      chars 21-22  status, bit 0 set: inclinometer reading valid
//   bytes 11-12  chars 23-26  elevation in thousandths, big-endian (0x02EE = 0.750)
//   bytes 13-14  chars 27-30  relative humidity in tenths of a percent, big-endian
//   byte 15      chars 31-32  temperature in whole degrees Celsius (0 to 255)
#include "sim/devices/SimSerialDevice.h"

class SimSensorBox : public SimSerialDevice {
public:
    static constexpr int FrameSize = 16;
    static inline const QByteArray Query = QByteArray("\x7f\x01\x87", 3);

    QByteArray receive(const QByteArray& bytes) override;
    QByteArray tick(int ms) override;
    QString stateLine() const override;

    int elevationThousandths() const;
    int temperature() const;
    // The frame the next query gets (with the current sequence number).
    QByteArray frame() const;
    int replies() const { return sequence_; }

private:
    QByteArray buffer_;
    qint64 elapsedMs_ = 0;
    int sequence_ = 0;
};
