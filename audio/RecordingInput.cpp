#include "audio/RecordingInput.h"

#include "audio/AudioLog.h"
#include "audio/WaveBuffer.h"

#include <array>

RecordingInput::RecordingInput(const QString& path, bool paced, QObject* parent)
    : WaveInput(parent)
    , path_(path)
    , paced_(paced)
{
}

int RecordingInput::open(QString& errorText)
{
    close();
    if (!reader_.open(path_, errorText))
        return WaveStatus::Error;
    qCInfo(lcAudio) << "playing" << path_ << reader_.sampleRate() << "samples/s" << reader_.channels()
                    << "channels," << reader_.format();
    delivered_ = 0;
    clock_.start();
    open_ = true;
    return WaveStatus::Ok;
}

void RecordingInput::close()
{
    reader_.close();
    open_ = false;
}

bool RecordingInput::takeBuffer(WaveBuffer& buffer)
{
    if (!open_)
        return false;
    if (paced_) {
        const qint64 dueMs = (delivered_ + 1) * WaveBuffer::Samples * 1000 / RecordingReader::OutputRate;
        if (clock_.elapsed() < dueMs)
            return false;
    }
    std::array<qint16, WaveBuffer::Samples> samples;
    if (reader_.read(samples.data(), WaveBuffer::Samples) < WaveBuffer::Samples) {
        close();
        emit ended();
        return false;
    }
    for (int i = 0; i < WaveBuffer::Samples; ++i)
        buffer.setSample(i, samples[i]);
    ++delivered_;
    return true;
}
