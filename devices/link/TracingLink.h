#pragma once
// The wire trace: a serial link that passes everything to the link it wraps and writes every
// byte sent and received to the kestrel.devices.link category at debug level, one line per
// write or arrival: "<hh:mm:ss.zzz UTC> <port> sent|received <hex bytes>". Off unless Kestrel.ini
// trace/link is true or QT_LOGGING_RULES asks for kestrel.devices.link.debug.
#include "devices/link/SerialLink.h"

#include <memory>

class TracingLink : public SerialLink {
    Q_OBJECT
public:
    explicit TracingLink(std::unique_ptr<SerialLink> inner, QObject* parent = nullptr);

    // Switches the trace on when Kestrel.ini trace/link says so (QT_LOGGING_RULES needs nothing).
    static void applySettings();
    // The line written for one block of bytes, without the time stamp in front.
    static QString traceLine(const QString& port, bool sent, const QByteArray& bytes);

    bool open(const QString& portText, const QString& settingsText) override;
    void close() override { inner_->close(); }
    bool isOpen() const override { return inner_->isOpen(); }
    qint64 write(const QByteArray& bytes) override;
    qint64 bytesToWrite() const override { return inner_->bytesToWrite(); }
    QByteArray readAll() override;
    bool setDataTerminalReady(bool on) override { return inner_->setDataTerminalReady(on); }
    bool setRequestToSend(bool on) override { return inner_->setRequestToSend(on); }
    QString portText() const override { return inner_->portText(); }
    QString errorText() const override { return inner_->errorText(); }
    bool isBusy() const override { return inner_->isBusy(); }

private:
    // Takes what has arrived into received_, tracing it as it comes rather than when read.
    void takeArrived();
    void trace(bool sent, const QByteArray& bytes) const;

    std::unique_ptr<SerialLink> inner_;
    QByteArray received_;
};
