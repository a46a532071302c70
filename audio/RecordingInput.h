#pragma once
// A recording as a wave input, for looking at it and for tests. Paced, a buffer becomes ready
// each time 8192 samples' worth of real time has passed, as from the sound card; unpaced,
// every poll gets the next buffer. The last partial buffer is left out.
#include "audio/RecordingReader.h"
#include "audio/WaveInput.h"

#include <QElapsedTimer>

class RecordingInput : public WaveInput {
    Q_OBJECT
public:
    RecordingInput(const QString& path, bool paced, QObject* parent = nullptr);

    int open(QString& errorText) override;
    void close() override;
    bool takeBuffer(WaveBuffer& buffer) override;

    const QString& path() const { return path_; }

private:
    QString path_;
    bool paced_;
    RecordingReader reader_;
    QElapsedTimer clock_;
    qint64 delivered_ = 0;
    bool open_ = false;
};
