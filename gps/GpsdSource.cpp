#include "gps/GpsdSource.h"

#include "gps/GpsLog.h"

#include <QSocketNotifier>

#include <cerrno>
#include <cstring>
#include <gps.h>
#include <sys/socket.h>

GpsdSource::GpsdSource(const QString& host, quint16 port, QObject* parent)
    : QObject(parent)
    , host_(host.toLatin1())
    , port_(QByteArray::number(port))
{
    retry_.setInterval(5000);
    connect(&retry_, &QTimer::timeout, this, &GpsdSource::tryOpen);
}

GpsdSource::~GpsdSource()
{
    stop();
}

QString GpsdSource::place() const
{
    return QString::fromLatin1(host_ + ':' + port_);
}

void GpsdSource::start()
{
    retry_.start();
    tryOpen();
}

void GpsdSource::stop()
{
    retry_.stop();
    delete notifier_;
    notifier_ = nullptr;
    if (data_) {
        gps_close(data_.get());
        data_.reset();
    }
    partial_.clear();
}

void GpsdSource::tryOpen()
{
    if (data_)
        return;
    auto data = std::make_unique<gps_data_t>();
    if (gps_open(host_.constData(), port_.constData(), data.get()) != 0) {
        if (!reportedDown_)
            emit report(QStringLiteral("gpsd %1 not reachable (%2); trying again")
                            .arg(place(), QString::fromLatin1(gps_errstr(errno))));
        reportedDown_ = true;
        return;
    }
    if (gps_stream(data.get(), WATCH_ENABLE | WATCH_NMEA, nullptr) != 0) {
        gps_close(data.get());
        if (!reportedDown_)
            emit report(QStringLiteral("gpsd %1 did not take the watch request; trying again").arg(place()));
        reportedDown_ = true;
        return;
    }
    data_ = std::move(data);
    retry_.stop();
    qCInfo(lcGps) << "gpsd connected at" << place();
    emit report(QStringLiteral("gpsd %1 connected").arg(place()));
    reportedDown_ = false;
    notifier_ = new QSocketNotifier(static_cast<qintptr>(data_->gps_fd), QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, &GpsdSource::readAvailable);
}

void GpsdSource::readAvailable()
{
    // The socket is libgps's; its bytes are read here without waiting, since gpsd's NMEA lines
    // go to the window as they stand and its JSON replies are of no use to it.
    char chunk[4096];
    QByteArray sentences;
    for (;;) {
        const ssize_t n = ::recv(static_cast<int>(data_->gps_fd), chunk, sizeof chunk, MSG_DONTWAIT);
        if (n == 0) {
            lost(QStringLiteral("closed the connection"));
            return;
        }
        if (n < 0) {
            if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)
                break;
            lost(QString::fromLocal8Bit(strerror(errno)));
            return;
        }
        partial_.append(chunk, n);
        qsizetype start = 0;
        for (qsizetype end; (end = partial_.indexOf('\n', start)) >= 0; start = end + 1)
            if (partial_.at(start) == '$')
                sentences += partial_.mid(start, end + 1 - start);
        partial_.remove(0, start);
        if (partial_.size() > kMaxLine)
            partial_.clear();
    }
    if (!sentences.isEmpty())
        emit bytesArrived(sentences);
}

void GpsdSource::lost(const QString& why)
{
    stop();
    qCInfo(lcGps) << "gpsd at" << place() << "lost:" << why;
    emit report(QStringLiteral("gpsd %1 gone (%2); trying again").arg(place(), why));
    reportedDown_ = true;
    retry_.start();
}
