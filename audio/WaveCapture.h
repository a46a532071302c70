#pragma once
// The capture state of the spectrum monitor: which input records, whether it is capturing,
// and the last error. Failures are shown to the operator through Prompts, each distinct text once
// until a start succeeds again, so repeated activations without a sound card give one message.
#include "audio/WaveInput.h"

#include <QObject>
#include <functional>
#include <memory>

class Prompts;

class WaveCapture : public QObject {
    Q_OBJECT
public:
    using Factory = std::function<std::unique_ptr<WaveInput>()>;

    explicit WaveCapture(Prompts& prompts, QObject* parent = nullptr);
    ~WaveCapture() override;

    // The sound card named by Kestrel.ini's audio/device (read at each start).
    static Factory soundCard();
    static Factory waveFile(const QString& path, bool paced); // any format RecordingReader reads
    // Takes effect at the next start.
    void setFactory(Factory factory);

    // When not capturing: opens a new input and starts it. Returns WaveStatus::Ok or the code
    // of the failure, which has been shown to the operator.
    int StartWaveInput();
    // Clears the capturing flag and closes the input.
    void StopWaveInput();

    bool capturing() const { return capturing_; }
    // The oldest finished buffer when capturing (the header's done flag).
    bool takeBuffer(WaveBuffer& buffer);
    const QString& lastError() const { return lastError_; }

signals:
    // A file input has played to its end; capturing has stopped.
    void ended();

private:
    void inputFailed(const QString& errorText);
    void inputEnded();
    void report(const QString& errorText);
    void dropInput();

    Prompts& prompts_;
    Factory factory_;
    std::unique_ptr<WaveInput> input_;
    bool capturing_ = false;
    QString lastError_;
    QString shownError_;
};
