#pragma once
// One recorded buffer of the spectrum monitor: 8192 samples of 16-bit mono PCM, 16384 bytes.
#include <QByteArray>
#include <cstring>

class WaveBuffer {
public:
    static constexpr int Samples = 8192;
    static constexpr int BlockAlign = 2;
    static constexpr int Bytes = Samples * BlockAlign;

    WaveBuffer()
        : bytes_(Bytes, '\0')
    {
    }

    // The signed 16-bit sample i divided by 32768: -1 up to just under 1.
    double ReadSample(int i) const
    {
        qint16 v = 0;
        std::memcpy(&v, bytes_.constData() + BlockAlign * i, sizeof v);
        return v / 32768.0;
    }

    QByteArray& bytes() { return bytes_; }
    const QByteArray& bytes() const { return bytes_; }
    void setSample(int i, qint16 value);

private:
    QByteArray bytes_;
};
