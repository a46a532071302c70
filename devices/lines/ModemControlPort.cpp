#include "devices/lines/ModemControlPort.h"

#include "devices/link/PortText.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {
QString reason(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

int bitOf(ModemControlPort::Signal signal)
{
    return signal == ModemControlPort::Signal::Dtr ? TIOCM_DTR : TIOCM_RTS;
}
} // namespace

std::shared_ptr<ModemControlPort> ModemControlPort::open(const QString& portText, QString* problem)
{
    const QString path = PortText::devicePath(portText);
    const QString name = PortText::displayName(portText);
    if (path.isEmpty()) {
        if (problem)
            *problem = QStringLiteral("\"%1\" names no serial port.").arg(portText);
        return nullptr;
    }
    const int fd = ::open(path.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        if (problem)
            *problem = QStringLiteral("%1: %2").arg(name, reason(errno));
        return nullptr;
    }
    // First thing after the open: the kernel has just raised DTR and RTS, which would key.
    int both = TIOCM_DTR | TIOCM_RTS;
    const bool lowered = ::ioctl(fd, TIOCMBIC, &both) == 0;
    const int error = errno;
    auto port = std::shared_ptr<ModemControlPort>(new ModemControlPort(fd, portText));
    if (problem)
        *problem = lowered ? QString()
                           : QStringLiteral("%1: no DTR/RTS control lines (%2)").arg(name, reason(error));
    return port;
}

ModemControlPort::ModemControlPort(int fd, const QString& portText)
    : fd_(fd)
    , portText_(portText)
{
}

ModemControlPort::~ModemControlPort()
{
    int both = TIOCM_DTR | TIOCM_RTS;
    ::ioctl(fd_, TIOCMBIC, &both);
    ::close(fd_);
}

bool ModemControlPort::set(Signal signal, bool on, QString* problem)
{
    int bit = bitOf(signal);
    if (::ioctl(fd_, on ? TIOCMBIS : TIOCMBIC, &bit) == 0)
        return true;
    if (problem)
        *problem
            = QStringLiteral("%1: cannot set %2 (%3)")
                  .arg(PortText::displayName(portText_),
                      signal == Signal::Dtr ? QStringLiteral("DTR") : QStringLiteral("RTS"), reason(errno));
    return false;
}
