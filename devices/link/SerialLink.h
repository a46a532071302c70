#pragma once
// One serial line of the station (rig CAT, rotator, sensor box, GPS): opened by port text and
// settings text, bytes out, whatever has arrived in, never waiting for an answer. Failures are
// reported as text through errorOccurred and errorText(), never by blocking or throwing.
#include <QByteArray>
#include <QObject>
#include <QString>

class SerialLink : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~SerialLink() override = default;

    // portText: a bare number n names COM port n (/dev/ttyS<n-1> here), anything else is a
    // device path. settingsText: "9600,n,8,1". False when the port could not be opened; the
    // reason is in errorText() and has been signalled.
    virtual bool open(const QString& portText, const QString& settingsText) = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;

    // Each byte is sent as it is. Returns the number of bytes queued, -1 when not open.
    virtual qint64 write(const QByteArray& bytes) = 0;
    // Bytes queued but not yet handed to the line.
    virtual qint64 bytesToWrite() const = 0;
    // Everything that has arrived since the last call; empty when nothing has (no waiting).
    virtual QByteArray readAll() = 0;

    // Modem control lines, for keying through DTR or RTS. False when not supported.
    virtual bool setDataTerminalReady(bool on) = 0;
    virtual bool setRequestToSend(bool on) = 0;

    // The port text given to the last open, and the last error in words ("" when none).
    virtual QString portText() const = 0;
    virtual QString errorText() const = 0;
    // True when the last open failed because another program holds the port.
    virtual bool isBusy() const { return false; }

signals:
    void readyRead();
    void bytesWritten(qint64 count);
    // A clear sentence naming the port and the reason ("/dev/ttyUSB0: no such port").
    void errorOccurred(const QString& text);
};
