#pragma once
// Reads the sound of a WAV file as the monitor records it: 16-bit mono at 22050 samples/s.
// Takes PCM of 8, 16, 24 or 32 bits and 32-bit float, any channel count (mixed to mono) and any
// sample rate (linear interpolation; receiver audio lies far below the new Nyquist limit).
// Streams from the file, so long recordings are fine.
#include <QFile>
#include <QString>
#include <vector>

class WavReader {
public:
    static constexpr int OutputRate = 22050;

    bool open(const QString& path, QString& errorText);
    void close();
    // Up to count samples; fewer only at the end of the sound data.
    int read(qint16* out, int count);

    int sampleRate() const { return rate_; }
    int channels() const { return channels_; }
    int bitsPerSample() const { return bits_; }

private:
    bool parseHeader(const QString& path, QString& errorText);
    // Makes frame index available in the window; false past the end of the data.
    bool ensureFrame(qint64 index);
    double decode(const char* frame) const;

    QFile file_;
    qint64 dataLeft_ = 0;
    int rate_ = 0;
    int channels_ = 0;
    int bits_ = 0;
    int blockAlign_ = 0;
    bool float_ = false;
    std::vector<double> window_;
    qint64 windowBase_ = 0;
    qint64 outIndex_ = 0;
};
