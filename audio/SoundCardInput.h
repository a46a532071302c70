#pragma once
// The sound card as a wave input: QAudioSource recording 16-bit mono at 22050 samples/s without
// pause, cut into buffers of 8192 samples. The device is the system's default input, or the one
// whose description (or id) Kestrel.ini names.
#include "audio/BufferQueue.h"
#include "audio/WaveInput.h"

#include <QAudio>
#include <QAudioFormat>
#include <memory>

class QAudioSource;
class QIODevice;

class SoundCardInput : public WaveInput {
    Q_OBJECT
public:
    explicit SoundCardInput(const QString& deviceName, QObject* parent = nullptr);
    ~SoundCardInput() override;

    int open(QString& errorText) override;
    void close() override;
    bool takeBuffer(WaveBuffer& buffer) override;

    // PCM, 1 channel, 22050 samples/s, 16 bits.
    static QAudioFormat waveFormat();
    static QString errorText(QAudio::Error error);

private:
    void readAvailable();
    void stateChanged(QAudio::State state);

    QString deviceName_;
    std::unique_ptr<QAudioSource> source_;
    QIODevice* io_ = nullptr;
    BufferQueue queue_;
};
