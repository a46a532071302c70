#pragma once
// A source of recorded buffers for the spectrum monitor: the sound card or a recording. Buffers
// are recorded back to back; the monitor polls for the oldest finished one.
#include <QObject>
#include <QString>

class WaveBuffer;

// Status codes of opening an input, in the manner of the wave-input result codes.
namespace WaveStatus {
constexpr int Ok = 0;
constexpr int Error = 1;
constexpr int BadDevice = 2;
} // namespace WaveStatus

class WaveInput : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~WaveInput() override = default;

    // Starts recording. Returns WaveStatus::Ok, or another code with errorText filled in.
    virtual int open(QString& errorText) = 0;
    virtual void close() = 0;
    // Moves the oldest completely recorded buffer into buffer; false when none is ready.
    virtual bool takeBuffer(WaveBuffer& buffer) = 0;

signals:
    // The input stopped on an error while recording.
    void failed(const QString& errorText);
    // A file input has delivered its last whole buffer.
    void ended();
};
