#include "devices/link/QtSerialLink.h"

#include "devices/link/LinkLog.h"
#include "devices/link/PortText.h"
#include "devices/link/SerialSettings.h"
#include "devices/link/TracingLink.h"

#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace {

const QString BusyReason = QStringLiteral("the port is busy (another program has it open)");

// Whether another program holds the terminal exclusively (TIOCEXCL, as gpsd does). The kernel
// refuses such an open with EBUSY, except to root, who passes; so root asks the terminal (only
// root: the extra open and close can blink DTR, which the kernel's own refusal spares the rest).
bool heldExclusively(const QString& path)
{
#if defined(Q_OS_LINUX) && defined(TIOCGEXCL)
    if (::geteuid() != 0)
        return false;
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return errno == EBUSY;
    int exclusive = 0;
    const bool held = ::ioctl(fd, TIOCGEXCL, &exclusive) == 0 && exclusive != 0;
    ::close(fd);
    return held;
#else
    Q_UNUSED(path);
    return false;
#endif
}

// Takes the advisory lock that picocom and pyserial take, so each side sees the other.
bool lockedByAnother(int fd)
{
#ifdef Q_OS_UNIX
    return fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
#else
    Q_UNUSED(fd);
    return false;
#endif
}

QSerialPort::Parity toQt(SerialSettings::Parity p)
{
    switch (p) {
    case SerialSettings::Parity::Even:
        return QSerialPort::EvenParity;
    case SerialSettings::Parity::Odd:
        return QSerialPort::OddParity;
    case SerialSettings::Parity::Mark:
        return QSerialPort::MarkParity;
    case SerialSettings::Parity::Space:
        return QSerialPort::SpaceParity;
    case SerialSettings::Parity::None:
        break;
    }
    return QSerialPort::NoParity;
}

QSerialPort::StopBits toQt(SerialSettings::StopBits s)
{
    switch (s) {
    case SerialSettings::StopBits::OneAndHalf:
        return QSerialPort::OneAndHalfStop;
    case SerialSettings::StopBits::Two:
        return QSerialPort::TwoStop;
    case SerialSettings::StopBits::One:
        break;
    }
    return QSerialPort::OneStop;
}

} // namespace

QtSerialLink::QtSerialLink(QObject* parent)
    : SerialLink(parent)
{
    connect(&port_, &QSerialPort::readyRead, this, &SerialLink::readyRead);
    connect(&port_, &QSerialPort::bytesWritten, this, &SerialLink::bytesWritten);
    connect(&port_, &QSerialPort::errorOccurred, this, &QtSerialLink::onPortError);
}

QtSerialLink::~QtSerialLink()
{
    // The error signal must not reach this half-destroyed object while the port closes.
    port_.disconnect(this);
    port_.close();
}

bool QtSerialLink::open(const QString& portText, const QString& settingsText)
{
    close();
    portText_ = portText;
    errorText_.clear();
    busy_ = false;

    QString problem;
    const std::optional<SerialSettings> settings = SerialSettings::parse(settingsText, &problem);
    if (!settings) {
        fail(problem);
        return false;
    }
    const QString path = PortText::devicePath(portText);
    if (path.isEmpty()) {
        fail(QStringLiteral("not a port (a port number counts from 1, or give a device path)"));
        return false;
    }

    lastDetail_.clear();
    if (heldExclusively(path)) {
        busy_ = true;
        fail(BusyReason);
        return false;
    }
    port_.setPortName(path);
    if (!port_.open(QIODevice::ReadWrite)) {
        const QString reason = openFailureReason(path);
        busy_ = reason == BusyReason;
        fail(reason);
        return false;
    }
    if (lockedByAnother(int(port_.handle()))) {
        port_.close();
        busy_ = true;
        fail(BusyReason);
        return false;
    }
    const bool applied = port_.setBaudRate(settings->baudRate)
        && port_.setDataBits(QSerialPort::DataBits(settings->dataBits))
        && port_.setParity(toQt(settings->parity)) && port_.setStopBits(toQt(settings->stopBits))
        && port_.setFlowControl(QSerialPort::NoFlowControl);
    if (!applied) {
        const QString reason = QStringLiteral("the port does not take the line settings \"%1\" (%2)")
                                   .arg(settingsText, lastDetail_);
        port_.close();
        fail(reason);
        return false;
    }
    port_.clearError();
    qCDebug(lcLink) << "opened" << path << settings->toText();
    return true;
}

QString QtSerialLink::openFailureReason(const QString& path) const
{
    switch (port_.error()) {
    case QSerialPort::DeviceNotFoundError:
        return QStringLiteral("no such port");
    case QSerialPort::PermissionError:
#ifdef Q_OS_UNIX
        // Qt reports a port held by another program (its lock file, or an exclusive open)
        // as a permission error too; tell them apart by asking whether we may use it at all.
        if (QFileInfo::exists(path) && ::access(QFile::encodeName(path).constData(), R_OK | W_OK) == 0)
            return BusyReason;
        if (!QFileInfo::exists(path))
            return QStringLiteral("no such port");
#endif
        return QStringLiteral("permission denied (is this user allowed to use the port?)");
    case QSerialPort::OpenError:
        return QStringLiteral("the port is already open");
    default:
        if (!QFileInfo::exists(path))
            return QStringLiteral("no such port");
        return QStringLiteral("cannot open the port (%1)").arg(port_.errorString());
    }
}

void QtSerialLink::close()
{
    if (port_.isOpen())
        port_.close();
}

bool QtSerialLink::isOpen() const
{
    return port_.isOpen();
}

qint64 QtSerialLink::write(const QByteArray& bytes)
{
    if (!port_.isOpen())
        return -1;
    return port_.write(bytes);
}

qint64 QtSerialLink::bytesToWrite() const
{
    return port_.isOpen() ? port_.bytesToWrite() : 0;
}

QByteArray QtSerialLink::readAll()
{
    return port_.isOpen() ? port_.readAll() : QByteArray();
}

bool QtSerialLink::setDataTerminalReady(bool on)
{
    return port_.isOpen() && port_.setDataTerminalReady(on);
}

bool QtSerialLink::setRequestToSend(bool on)
{
    return port_.isOpen() && port_.setRequestToSend(on);
}

void QtSerialLink::fail(const QString& reason)
{
    errorText_ = QStringLiteral("%1: %2").arg(PortText::displayName(portText_), reason);
    qCWarning(lcLink).noquote() << errorText_;
    emit errorOccurred(errorText_);
}

void QtSerialLink::onPortError(QSerialPort::SerialPortError error)
{
    // Errors while opening are reported by open() itself, with a better reason.
    if (error == QSerialPort::NoError)
        return;
    const QString detail = port_.errorString();
    lastDetail_ = detail;
    if (!port_.isOpen())
        return;
    switch (error) {
    case QSerialPort::ResourceError:
    case QSerialPort::ReadError:
    case QSerialPort::WriteError:
    case QSerialPort::DeviceNotFoundError:
        // A USB adapter pulled out, or the far end of a pseudo-terminal gone: the port is
        // useless now, so close it and let the owner decide about reopening.
        qCDebug(lcLink).noquote() << PortText::displayName(portText_) << error << detail;
        port_.close();
        fail(QStringLiteral("the device vanished while open; the port is closed"));
        break;
    case QSerialPort::TimeoutError:
    case QSerialPort::UnsupportedOperationError:
        // A pseudo-terminal has no modem lines; the caller learns that from the false result.
        qCDebug(lcLink).noquote() << PortText::displayName(portText_) << detail;
        port_.clearError();
        break;
    default:
        port_.clearError();
        fail(QStringLiteral("%1").arg(detail));
        break;
    }
}

std::unique_ptr<SerialLink> makeQtSerialLink()
{
    TracingLink::applySettings();
    return std::make_unique<TracingLink>(std::make_unique<QtSerialLink>());
}
