#pragma once
// The serial link on a real port through Qt SerialPort: resolves the port text, refuses a bad
// settings text before opening, and turns every failure (no such port, busy, permission, a
// device that vanishes while open) into one clear sentence through errorOccurred. Ports are the
// station's own: opened exclusively (Qt's lock file and TIOCEXCL, plus flock), and a port that
// another program holds is reported busy, never shared.
#include "devices/link/SerialLink.h"

#include <QSerialPort>

#include <memory>

class QtSerialLink : public SerialLink {
    Q_OBJECT
public:
    explicit QtSerialLink(QObject* parent = nullptr);
    ~QtSerialLink() override;

    bool open(const QString& portText, const QString& settingsText) override;
    void close() override;
    bool isOpen() const override;

    qint64 write(const QByteArray& bytes) override;
    qint64 bytesToWrite() const override;
    QByteArray readAll() override;

    bool setDataTerminalReady(bool on) override;
    bool setRequestToSend(bool on) override;

    QString portText() const override { return portText_; }
    QString errorText() const override { return errorText_; }
    bool isBusy() const override { return busy_; }

private:
    void fail(const QString& reason);
    QString openFailureReason(const QString& path) const;
    void onPortError(QSerialPort::SerialPortError error);

    QSerialPort port_;
    QString portText_;
    QString errorText_;
    QString lastDetail_; // the port's own words for its last error, kept past clearError()
    bool busy_ = false;
};

// For StationPorts: StationPorts ports(makeQtSerialLink); the link comes wrapped in the wire
// trace (TracingLink), which Kestrel.ini trace/link or QT_LOGGING_RULES switches on.
std::unique_ptr<SerialLink> makeQtSerialLink();
