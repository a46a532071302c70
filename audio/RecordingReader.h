#pragma once
// Reads a recording as the monitor records the sound card: 16-bit mono at 22050 samples/s.
// libsndfile reads the file (WAV, FLAC, Ogg, AIFF and the other formats it knows), channels
// are mixed to mono, and libsoxr converts any other rate with a proper low-pass filter, so a
// tone above the new Nyquist limit vanishes instead of folding down. Streams from the file.
#include <QString>

#include <vector>

struct sf_private_tag;
struct soxr;

class RecordingReader {
public:
    static constexpr int OutputRate = 22050;

    RecordingReader() = default;
    ~RecordingReader();
    RecordingReader(const RecordingReader&) = delete;
    RecordingReader& operator=(const RecordingReader&) = delete;

    bool open(const QString& path, QString& errorText);
    void close();
    // Up to count samples; fewer only at the end of the recording.
    int read(qint16* out, int count);

    int sampleRate() const { return rate_; }
    int channels() const { return channels_; }
    // The container and encoding as libsndfile names them ("WAV (Microsoft) / Signed 16 bit PCM").
    const QString& format() const { return format_; }

private:
    // Reads and converts the next block into pending_; false at the end.
    bool refill();

    sf_private_tag* file_ = nullptr;
    soxr* resampler_ = nullptr;
    int rate_ = 0;
    int channels_ = 0;
    QString format_;
    bool inputDone_ = false;
    bool drained_ = false;
    std::vector<float> frames_;
    std::vector<float> mono_;
    std::vector<float> pending_;
    std::size_t pendingPos_ = 0;
};
