#include "sim/PtyChannel.h"

#include <cerrno>
#include <unistd.h>

namespace {

// Beyond this much unread output the reader is taken to be gone, and old bytes are dropped.
constexpr int kUnreadLimit = 2048;

} // namespace

PtyChannel::PtyChannel(const QString& name, std::unique_ptr<SimSerialDevice> device, QObject* parent)
    : QObject(parent)
    , name_(name)
    , device_(std::move(device))
{
    if (!pty_.isOpen())
        return;
    reader_ = std::make_unique<QSocketNotifier>(pty_.masterFd(), QSocketNotifier::Read);
    connect(reader_.get(), &QSocketNotifier::activated, this, &PtyChannel::onReadable);
    writer_ = std::make_unique<QSocketNotifier>(pty_.masterFd(), QSocketNotifier::Write);
    writer_->setEnabled(false);
    connect(writer_.get(), &QSocketNotifier::activated, this, &PtyChannel::onWritable);
}

void PtyChannel::onReadable()
{
    const QByteArray in = pty_.readAvailable();
    if (!in.isEmpty())
        send(device_->receive(in));
}

void PtyChannel::tick(int ms)
{
    if (pty_.isOpen())
        send(device_->tick(ms));
}

void PtyChannel::send(const QByteArray& bytes)
{
    if (bytes.isEmpty() || !pty_.isOpen())
        return;
    if (pty_.pendingForSlave() > kUnreadLimit) {
        pty_.dropPendingForSlave();
        outgoing_.clear();
    }
    outgoing_ += bytes;
    onWritable();
}

void PtyChannel::onWritable()
{
    while (!outgoing_.isEmpty()) {
        const ssize_t n = ::write(pty_.masterFd(), outgoing_.constData(), size_t(outgoing_.size()));
        if (n > 0) {
            outgoing_.remove(0, n);
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && errno != EAGAIN)
            outgoing_.clear();
        break;
    }
    if (outgoing_.size() > kUnreadLimit)
        outgoing_ = outgoing_.right(kUnreadLimit);
    writer_->setEnabled(!outgoing_.isEmpty());
}

QString PtyChannel::stateLine() const
{
    return name_ + QLatin1Char(' ') + device_->stateLine();
}

void PtyChannel::close()
{
    reader_.reset();
    writer_.reset();
    pty_.closeMaster();
}
