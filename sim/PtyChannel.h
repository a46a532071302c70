#pragma once
// Binds one simulated serial device to a pseudo-terminal: what the program writes to the slave
// goes into the device, the device's answers and its own output go back out. Output nobody
// reads is dropped rather than piled up, as a receiver on an unplugged cable would lose it.
#include "sim/devices/SimSerialDevice.h"
#include "sim/pty/PtyPair.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

class PtyChannel : public QObject {
    Q_OBJECT
public:
    PtyChannel(const QString& name, std::unique_ptr<SimSerialDevice> device, QObject* parent = nullptr);

    bool isOpen() const { return pty_.isOpen(); }
    QString errorText() const { return pty_.errorText(); }
    QString name() const { return name_; }
    QString path() const { return pty_.slavePath(); }
    SimSerialDevice& device() { return *device_; }

    // Lets the device's time pass and sends what it produces.
    void tick(int ms);
    QString stateLine() const;
    void close();

private:
    void onReadable();
    void onWritable();
    void send(const QByteArray& bytes);

    QString name_;
    std::unique_ptr<SimSerialDevice> device_;
    PtyPair pty_;
    std::unique_ptr<QSocketNotifier> reader_;
    std::unique_ptr<QSocketNotifier> writer_;
    QByteArray outgoing_;
};
