#pragma once
// WAV files for the audio tests, written byte by byte so the reader is checked against the
// format itself, not against itself.
#include <QByteArray>
#include <QString>
#include <QVector>

namespace WavTestFile {
// A RIFF/WAVE file: a "fmt " chunk of 16 bytes with the given tag, optional extra chunk before
// it, then "data" (dataSize overrides the length written in the data header when >= 0).
QByteArray build(quint16 tag, int channels, int rate, int bits, const QByteArray& data,
    const QByteArray& chunkBeforeFormat = {}, qint64 dataSize = -1);
// Little-endian 16-bit samples.
QByteArray pcm16(const QVector<qint16>& samples);
// round(amplitude * 32767 * sin(2 pi f n / rate)) for n = 0..count-1.
QVector<qint16> tone(double frequency, double amplitude, int rate, int count);
// Writes a 16-bit mono file; returns its path.
QString writeMono16(const QString& path, const QVector<qint16>& samples, int rate = 22050);
} // namespace WavTestFile
