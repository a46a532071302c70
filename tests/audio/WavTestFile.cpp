#include "tests/audio/WavTestFile.h"

#include <QFile>
#include <QtEndian>
#include <cmath>
#include <numbers>

namespace WavTestFile {
namespace {
void put16(QByteArray& b, quint16 v)
{
    char c[2];
    qToLittleEndian(v, c);
    b.append(c, 2);
}

void put32(QByteArray& b, quint32 v)
{
    char c[4];
    qToLittleEndian(v, c);
    b.append(c, 4);
}
} // namespace

QByteArray build(quint16 tag, int channels, int rate, int bits, const QByteArray& data,
    const QByteArray& chunkBeforeFormat, qint64 dataSize)
{
    QByteArray body("WAVE");
    body += chunkBeforeFormat;
    body += "fmt ";
    put32(body, 16);
    put16(body, tag);
    put16(body, channels);
    put32(body, rate);
    put32(body, rate * channels * bits / 8);
    put16(body, channels * bits / 8);
    put16(body, bits);
    body += "data";
    put32(body, dataSize >= 0 ? static_cast<quint32>(dataSize) : data.size());
    body += data;
    QByteArray file("RIFF");
    put32(file, body.size());
    return file + body;
}

QByteArray pcm16(const QVector<qint16>& samples)
{
    QByteArray b;
    for (qint16 s : samples)
        put16(b, static_cast<quint16>(s));
    return b;
}

QVector<qint16> tone(double frequency, double amplitude, int rate, int count)
{
    QVector<qint16> out(count);
    for (int n = 0; n < count; ++n)
        out[n] = static_cast<qint16>(
            std::lround(amplitude * 32767.0 * std::sin(2.0 * std::numbers::pi * frequency * n / rate)));
    return out;
}

QString writeMono16(const QString& path, const QVector<qint16>& samples, int rate)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(build(1, 1, rate, 16, pcm16(samples)));
    return path;
}
} // namespace WavTestFile
