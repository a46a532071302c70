#include "audio/RecordingReader.h"

#include <QFile>

#include <algorithm>
#include <cmath>

#include <sndfile.h>
#include <soxr.h>

namespace {
constexpr int FramesPerRead = 4096;

// libsndfile's own name of a container or encoding ("WAV (Microsoft)", "Signed 16 bit PCM").
QString formatPart(int value)
{
    SF_FORMAT_INFO info {};
    info.format = value;
    return sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) == 0 && info.name
        ? QString::fromUtf8(info.name)
        : QString::number(value, 16);
}

QString formatName(int format)
{
    return formatPart(format & SF_FORMAT_TYPEMASK) + QStringLiteral(" / ")
        + formatPart(format & SF_FORMAT_SUBMASK);
}
} // namespace

RecordingReader::~RecordingReader()
{
    close();
}

bool RecordingReader::open(const QString& path, QString& errorText)
{
    close();
    QFile probe(path);
    if (!probe.open(QIODevice::ReadOnly)) {
        errorText = QStringLiteral("The recording %1 could not be opened: %2").arg(path, probe.errorString());
        return false;
    }
    probe.close();
    SF_INFO info {};
    file_ = sf_open(QFile::encodeName(path).constData(), SFM_READ, &info);
    if (!file_) {
        errorText = QStringLiteral("The file %1 is not a recording Kestrel can read (%2).")
                        .arg(path, QString::fromUtf8(sf_strerror(nullptr)));
        return false;
    }
    rate_ = info.samplerate;
    channels_ = info.channels;
    format_ = formatName(info.format);
    if (info.frames <= 0 || rate_ < 1 || channels_ < 1) {
        errorText = QStringLiteral("The recording %1 has no sound data.").arg(path);
        close();
        return false;
    }
    if (rate_ != OutputRate) {
        soxr_error_t error = nullptr;
        const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
        const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
        resampler_ = soxr_create(rate_, OutputRate, 1, &error, &io, &quality, nullptr);
        if (error) {
            errorText = QStringLiteral("The recording %1 cannot be converted from %2 samples/s: %3")
                            .arg(path)
                            .arg(rate_)
                            .arg(QString::fromUtf8(error));
            close();
            return false;
        }
    }
    frames_.resize(std::size_t(FramesPerRead) * std::size_t(channels_));
    mono_.resize(FramesPerRead);
    return true;
}

void RecordingReader::close()
{
    if (resampler_)
        soxr_delete(resampler_);
    resampler_ = nullptr;
    if (file_)
        sf_close(file_);
    file_ = nullptr;
    inputDone_ = false;
    drained_ = false;
    pending_.clear();
    pendingPos_ = 0;
}

bool RecordingReader::refill()
{
    pending_.clear();
    pendingPos_ = 0;
    while (pending_.empty() && !drained_) {
        std::size_t frames = 0;
        if (!inputDone_) {
            frames
                = std::size_t(std::max<sf_count_t>(0, sf_readf_float(file_, frames_.data(), FramesPerRead)));
            inputDone_ = frames == 0;
            for (std::size_t f = 0; f < frames; ++f) {
                float sum = 0.0f;
                for (int c = 0; c < channels_; ++c)
                    sum += frames_[f * std::size_t(channels_) + std::size_t(c)];
                mono_[f] = sum / float(channels_);
            }
        }
        if (!resampler_) {
            pending_.assign(mono_.begin(), mono_.begin() + std::ptrdiff_t(frames));
            drained_ = inputDone_;
            continue;
        }
        // At the end the resampler is handed no input, which releases what its filter holds.
        pending_.resize(frames * OutputRate / std::size_t(rate_) + 256);
        std::size_t produced = 0;
        const soxr_error_t error = soxr_process(resampler_, inputDone_ ? nullptr : mono_.data(), frames,
            nullptr, pending_.data(), pending_.size(), &produced);
        pending_.resize(error ? 0 : produced);
        if (error || (inputDone_ && produced == 0))
            drained_ = true;
    }
    return !pending_.empty();
}

int RecordingReader::read(qint16* out, int count)
{
    if (!file_)
        return 0;
    int produced = 0;
    while (produced < count) {
        if (pendingPos_ >= pending_.size() && !refill())
            break;
        const double v = pending_[pendingPos_++];
        out[produced++] = static_cast<qint16>(std::clamp(std::lround(v * 32768.0), -32768L, 32767L));
    }
    return produced;
}
