#pragma once
// A serial port opened only for its modem control lines DTR and RTS, to key a transmitter or run
// a motor through a serial adapter. Both lines are driven low the moment the port opens (the
// kernel raises them on open). Safe to use from several threads: each change is one ioctl.
#include <QString>

#include <memory>

class ModemControlPort {
public:
    enum class Signal { Dtr, Rts };

    // nullptr when the port cannot be opened; *problem names the port and the reason.
    static std::shared_ptr<ModemControlPort> open(const QString& portText, QString* problem);
    ~ModemControlPort();
    ModemControlPort(const ModemControlPort&) = delete;
    ModemControlPort& operator=(const ModemControlPort&) = delete;

    // False when the device has no such line (a pseudo-terminal) or refused; *problem says why.
    bool set(Signal signal, bool on, QString* problem = nullptr);
    QString portText() const { return portText_; }

private:
    ModemControlPort(int fd, const QString& portText);

    int fd_;
    QString portText_;
};
