#include "sim/pty/PtyPair.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int kSliceMs = 5;

void runPendingEvents()
{
    QCoreApplication* app = QCoreApplication::instance();
    if (app && app->thread() == QThread::currentThread())
        QCoreApplication::processEvents(QEventLoop::AllEvents, kSliceMs);
}

void waitFor(int fd, short events, int ms)
{
    pollfd p { fd, events, 0 };
    ::poll(&p, 1, ms);
}

} // namespace

PtyPair::PtyPair()
{
    char name[256] = {};
    termios tio {};
    ::cfmakeraw(&tio);
    tio.c_cflag |= CLOCAL | CREAD;
    if (::openpty(&master_, &slave_, name, &tio, nullptr) != 0) {
        error_ = QStringLiteral("cannot open a pseudo-terminal: %1")
                     .arg(QString::fromLocal8Bit(std::strerror(errno)));
        master_ = slave_ = -1;
        return;
    }
    ::fcntl(master_, F_SETFL, ::fcntl(master_, F_GETFL) | O_NONBLOCK);
    ::fcntl(master_, F_SETFD, FD_CLOEXEC);
    ::fcntl(slave_, F_SETFD, FD_CLOEXEC);
    slavePath_ = QString::fromLocal8Bit(name);
}

PtyPair::~PtyPair()
{
    closeMaster();
}

void PtyPair::closeMaster()
{
    if (slave_ >= 0)
        ::close(slave_);
    if (master_ >= 0)
        ::close(master_);
    master_ = slave_ = -1;
}

QByteArray PtyPair::readAvailable()
{
    QByteArray out;
    if (master_ < 0)
        return out;
    char buf[4096];
    for (;;) {
        const ssize_t n = ::read(master_, buf, sizeof buf);
        if (n > 0) {
            out.append(buf, n);
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        break; // EAGAIN: nothing more; EIO: no slave holder
    }
    return out;
}

template <typename Done> QByteArray PtyPair::readWhile(int timeoutMs, Done done)
{
    QByteArray got;
    const QDeadlineTimer deadline(timeoutMs);
    for (;;) {
        got += readAvailable();
        if (done(got) || deadline.hasExpired() || master_ < 0)
            return got;
        runPendingEvents();
        waitFor(master_, POLLIN, kSliceMs);
    }
}

QByteArray PtyPair::readExactly(int count, int timeoutMs)
{
    return readWhile(timeoutMs, [count](const QByteArray& got) { return got.size() >= count; });
}

QByteArray PtyPair::readUntil(const QByteArray& end, int timeoutMs)
{
    return readWhile(timeoutMs, [&end](const QByteArray& got) { return got.endsWith(end); });
}

QByteArray PtyPair::readFor(int ms)
{
    return readWhile(ms, [](const QByteArray&) { return false; });
}

bool PtyPair::write(const QByteArray& bytes, int timeoutMs)
{
    if (master_ < 0)
        return false;
    qsizetype done = 0;
    const QDeadlineTimer deadline(timeoutMs);
    while (done < bytes.size()) {
        const ssize_t n = ::write(master_, bytes.constData() + done, size_t(bytes.size() - done));
        if (n > 0) {
            done += n;
            continue;
        }
        if (n < 0 && errno != EAGAIN && errno != EINTR)
            return false;
        if (deadline.hasExpired())
            return false;
        runPendingEvents();
        waitFor(master_, POLLOUT, kSliceMs);
    }
    return true;
}

int PtyPair::pendingForSlave() const
{
    int n = 0;
    if (slave_ < 0 || ::ioctl(slave_, TIOCINQ, &n) != 0)
        return 0;
    return n;
}

void PtyPair::dropPendingForSlave()
{
    if (slave_ >= 0)
        ::tcflush(slave_, TCIFLUSH);
}
