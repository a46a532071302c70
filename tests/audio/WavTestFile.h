#pragma once
// WAV files for the audio tests, written byte by byte so the reader is checked against the
// format itself, not against itself.
#include <QFile>
#include <QVector>
#include <QtEndian>
#include <cmath>
#include <numbers>

namespace WavTestFile {
template <class T> void put(QByteArray& b, T v)
{
    char c[sizeof v];
    qToLittleEndian(v, c);
    b.append(c, sizeof v);
}

// A RIFF/WAVE file: an optional chunk, a 16-byte "fmt " chunk with the given tag, then "data"
// (dataSize, when >= 0, overrides the length written in the data header).
inline QByteArray build(quint16 tag, quint16 channels, quint32 rate, quint16 bits, const QByteArray& data,
    const QByteArray& chunkBeforeFormat = {}, qint64 dataSize = -1)
{
    QByteArray body = "WAVE" + chunkBeforeFormat + "fmt ";
    put<quint32>(body, 16);
    put(body, tag);
    put(body, channels);
    put(body, rate);
    put<quint32>(body, rate * channels * bits / 8);
    put<quint16>(body, channels * bits / 8);
    put(body, bits);
    body += "data";
    put<quint32>(body, dataSize >= 0 ? static_cast<quint32>(dataSize) : data.size());
    QByteArray file("RIFF");
    put<quint32>(file, body.size() + data.size());
    return file + body + data;
}

inline QByteArray pcm16(const QVector<qint16>& samples)
{
    QByteArray b;
    for (qint16 s : samples)
        put(b, s);
    return b;
}

// round(amplitude * 32767 * sin(2 pi f n / rate)) for n = 0..count-1, at 22050 samples/s
// unless another rate is given.
inline QVector<qint16> tone(double frequency, double amplitude, int count, int rate = 22050)
{
    QVector<qint16> out(count);
    for (int n = 0; n < count; ++n)
        out[n] = static_cast<qint16>(
            std::lround(amplitude * 32767.0 * std::sin(2.0 * std::numbers::pi * frequency * n / rate)));
    return out;
}

// Writes a 16-bit mono file at 22050 samples/s (or the given rate); returns its path.
inline QString writeMono16(const QString& path, const QVector<qint16>& samples, quint32 rate = 22050)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(build(1, 1, rate, 16, pcm16(samples)));
    return path;
}
} // namespace WavTestFile
