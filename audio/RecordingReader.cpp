#include "audio/WavReader.h"

#include <QtEndian>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace {
constexpr quint16 TagPcm = 1;
constexpr quint16 TagFloat = 3;
constexpr quint16 TagExtensible = 0xFFFE;
constexpr int FramesPerRead = 4096;

quint16 le16(const char* p)
{
    return qFromLittleEndian<quint16>(p);
}

quint32 le32(const char* p)
{
    return qFromLittleEndian<quint32>(p);
}
} // namespace

bool WavReader::open(const QString& path, QString& errorText)
{
    close();
    file_.setFileName(path);
    if (!file_.open(QIODevice::ReadOnly)) {
        errorText = QStringLiteral("The wave file %1 could not be opened: %2").arg(path, file_.errorString());
        return false;
    }
    if (!parseHeader(path, errorText)) {
        close();
        return false;
    }
    return true;
}

bool WavReader::parseHeader(const QString& path, QString& errorText)
{
    const QByteArray riff = file_.read(12);
    if (riff.size() < 12 || !riff.startsWith("RIFF") || riff.mid(8, 4) != "WAVE") {
        errorText = QStringLiteral("The file %1 is not a wave file.").arg(path);
        return false;
    }
    bool haveFormat = false;
    quint16 tag = 0;
    for (;;) {
        const QByteArray head = file_.read(8);
        if (head.size() < 8)
            break;
        const quint32 size = le32(head.constData() + 4);
        if (head.startsWith("fmt ")) {
            const QByteArray fmt = file_.read(size);
            if (fmt.size() < 16)
                break;
            tag = le16(fmt.constData());
            channels_ = le16(fmt.constData() + 2);
            rate_ = static_cast<int>(le32(fmt.constData() + 4));
            blockAlign_ = le16(fmt.constData() + 12);
            bits_ = le16(fmt.constData() + 14);
            if (tag == TagExtensible && fmt.size() >= 26)
                tag = le16(fmt.constData() + 24);
            haveFormat = true;
            if (size & 1)
                file_.read(1);
        } else if (head.startsWith("data")) {
            if (!haveFormat)
                break;
            // Streams written on the fly may carry a size of 0 or too large: read to the end.
            const qint64 rest = file_.size() - file_.pos();
            dataLeft_ = (size == 0 || size > rest) ? rest : size;
            const bool pcm = tag == TagPcm && (bits_ == 8 || bits_ == 16 || bits_ == 24 || bits_ == 32);
            float_ = tag == TagFloat && bits_ == 32;
            if ((!pcm && !float_) || channels_ < 1 || rate_ < 1 || blockAlign_ < channels_ * bits_ / 8) {
                errorText = QStringLiteral("The wave file %1 is not in a supported format (PCM of 8, 16, "
                                           "24 or 32 bits, or 32-bit float).")
                                .arg(path);
                return false;
            }
            return true;
        } else if (!file_.seek(file_.pos() + size + (size & 1))) {
            break;
        }
    }
    errorText = QStringLiteral("The wave file %1 has no sound data.").arg(path);
    return false;
}

void WavReader::close()
{
    file_.close();
    dataLeft_ = 0;
    window_.clear();
    windowBase_ = 0;
    outIndex_ = 0;
}

double WavReader::decode(const char* frame) const
{
    const int bytes = bits_ / 8;
    double sum = 0.0;
    for (int c = 0; c < channels_; ++c) {
        const char* p = frame + c * bytes;
        switch (bits_) {
        case 8:
            sum += (static_cast<unsigned char>(*p) - 128) / 128.0;
            break;
        case 16:
            sum += qFromLittleEndian<qint16>(p) / 32768.0;
            break;
        case 24: {
            const quint32 raw = static_cast<unsigned char>(p[0]) | static_cast<unsigned char>(p[1]) << 8
                | static_cast<quint32>(static_cast<unsigned char>(p[2])) << 16;
            sum += static_cast<qint32>(raw << 8) / 2147483648.0;
            break;
        }
        default:
            if (float_) {
                const quint32 raw = le32(p);
                float f;
                std::memcpy(&f, &raw, sizeof f);
                sum += f;
            } else {
                sum += qFromLittleEndian<qint32>(p) / 2147483648.0;
            }
        }
    }
    return sum / channels_;
}

bool WavReader::ensureFrame(qint64 index)
{
    while (index >= windowBase_ + static_cast<qint64>(window_.size())) {
        const qint64 frames = std::min<qint64>(FramesPerRead, dataLeft_ / blockAlign_);
        if (frames <= 0)
            return false;
        const QByteArray block = file_.read(frames * blockAlign_);
        const qint64 got = block.size() / blockAlign_;
        if (got <= 0)
            return false;
        dataLeft_ -= frames * blockAlign_;
        // Keep only what the interpolation can still need.
        const qint64 drop = std::clamp<qint64>(index - 1 - windowBase_, 0, window_.size());
        window_.erase(window_.begin(), window_.begin() + drop);
        windowBase_ += drop;
        for (qint64 f = 0; f < got; ++f)
            window_.push_back(decode(block.constData() + f * blockAlign_));
    }
    return true;
}

int WavReader::read(qint16* out, int count)
{
    if (!file_.isOpen())
        return 0;
    int produced = 0;
    while (produced < count) {
        const qint64 scaled = outIndex_ * rate_;
        const qint64 i0 = scaled / OutputRate;
        const double frac = static_cast<double>(scaled % OutputRate) / OutputRate;
        if (!ensureFrame(frac > 0.0 ? i0 + 1 : i0))
            break;
        double v = window_[i0 - windowBase_];
        if (frac > 0.0)
            v += (window_[i0 + 1 - windowBase_] - v) * frac;
        out[produced++] = static_cast<qint16>(std::clamp(std::lround(v * 32768.0), -32768L, 32767L));
        ++outIndex_;
    }
    return produced;
}
