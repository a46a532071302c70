#include "cluster/ClusterClient.h"

#include "cluster/ClusterLog.h"

#include <QTcpSocket>

namespace {
constexpr qint64 sliceBytes = 64 * 1024;
constexpr qint64 readBufferBytes = 1024 * 1024;
} // namespace

ClusterClient::ClusterClient(QObject* parent)
    : QObject(parent)
    , socket_(new QTcpSocket(this))
    , spots_(new SpotTableModel(1000, this))
{
    socket_->setObjectName(QStringLiteral("socket"));
    // A bounded read buffer lets TCP hold back a flooding node instead of filling memory.
    socket_->setReadBufferSize(readBufferBytes);
    flushTimer_.setSingleShot(true);
    flushTimer_.setInterval(flushIntervalMs);
    connectTimer_.setSingleShot(true);
    connectTimer_.setInterval(connectTimeoutMs);
    connect(&flushTimer_, &QTimer::timeout, this, &ClusterClient::flush);
    connect(&connectTimer_, &QTimer::timeout, this, &ClusterClient::onConnectTimeout);
    connect(socket_, &QTcpSocket::readyRead, this, &ClusterClient::readSome);
    connect(socket_, &QTcpSocket::connected, this, &ClusterClient::onConnected);
    connect(socket_, &QTcpSocket::disconnected, this, &ClusterClient::onDisconnected);
    connect(socket_, &QTcpSocket::errorOccurred, this, &ClusterClient::onError);
}

bool ClusterClient::isConnected() const
{
    return socket_->state() == QAbstractSocket::ConnectedState;
}

void ClusterClient::connectTo(const ClusterServer& server)
{
    close();
    server_ = server;
    reported_ = false;
    telnet_.reset();
    loginSent_ = false;
    qCInfo(lcCluster) << "connecting to" << server.host << server.port;
    connectTimer_.start();
    socket_->connectToHost(server.host, server.port);
}

void ClusterClient::close()
{
    connectTimer_.stop();
    quiet_ = true;
    socket_->abort();
    quiet_ = false;
    if (connected_) {
        connected_ = false;
        emit connectionChanged(false);
    }
}

bool ClusterClient::send(const QString& text)
{
    if (socket_->state() == QAbstractSocket::UnconnectedState) {
        notice(QStringLiteral("*** Not connected, line not sent. Press TCP to reconnect."));
        return false;
    }
    const QByteArray bytes = telnet_.encode(text.toLatin1() + "\r\n");
    return socket_->write(bytes) == bytes.size();
}

bool ClusterClient::isLoginPrompt(const QString& openLine)
{
    return openLine.trimmed().endsWith(QLatin1String("login:"), Qt::CaseInsensitive);
}

void ClusterClient::readSome()
{
    readScheduled_ = false;
    feed(socket_->read(sliceBytes));
    if (socket_->bytesAvailable() > 0 && !readScheduled_) {
        // Let the window paint and take input before the next slice.
        readScheduled_ = true;
        QTimer::singleShot(0, this, [this] {
            if (readScheduled_)
                readSome();
        });
    }
}

void ClusterClient::drain()
{
    readScheduled_ = false;
    while (socket_->bytesAvailable() > 0)
        feed(socket_->read(sliceBytes));
}

void ClusterClient::feed(const QByteArray& bytes)
{
    if (bytes.isEmpty())
        return;
    const TelnetSession::Received in = telnet_.receive(bytes);
    if (!in.answer.isEmpty() && isConnected())
        socket_->write(in.answer);
    terminal_.feed(in.text);
    if (!autoLogin_.isEmpty() && !loginSent_ && isConnected() && isLoginPrompt(terminal_.openLine())) {
        loginSent_ = true;
        qCInfo(lcCluster) << "logging in as" << autoLogin_;
        send(autoLogin_);
    }
    for (const QString& line : terminal_.takeEndedLines()) {
        if (auto spot = parseSpotLine(line)) {
            pendingSpots_.append(*spot);
            ++spotsParsed_;
        }
    }
    if (pendingSpots_.size() > spots_->maxSpots())
        pendingSpots_.remove(0, pendingSpots_.size() - spots_->maxSpots());
    scheduleFlush();
}

void ClusterClient::scheduleFlush()
{
    if (!flushTimer_.isActive())
        flushTimer_.start();
}

void ClusterClient::flush()
{
    spots_->addSpots(std::exchange(pendingSpots_, {}));
    emit terminalChanged();
}

void ClusterClient::notice(const QString& text)
{
    terminal_.appendNotice(text);
    scheduleFlush();
}

QString ClusterClient::address() const
{
    return server_.host + QLatin1Char(':') + QString::number(server_.port);
}

void ClusterClient::onConnected()
{
    connectTimer_.stop();
    connected_ = true;
    qCInfo(lcCluster) << "connected to" << address();
    emit connectionChanged(true);
}

void ClusterClient::onDisconnected()
{
    if (quiet_)
        return;
    drain();
    const bool was = connected_;
    connected_ = false;
    if (!reported_) {
        reported_ = true;
        notice(QStringLiteral("*** Connection to %1 closed. Press TCP to reconnect.").arg(address()));
    }
    if (was)
        emit connectionChanged(false);
}

void ClusterClient::onError(QAbstractSocket::SocketError error)
{
    if (quiet_ || error == QAbstractSocket::RemoteHostClosedError || reported_)
        return;
    connectTimer_.stop();
    reported_ = true;
    qCWarning(lcCluster) << "connection to" << address() << "failed:" << socket_->errorString();
    const QString what = connected_ ? QStringLiteral("lost") : QStringLiteral("failed");
    drain();
    notice(QStringLiteral("*** Connection to %1 %2 (%3). Press TCP to reconnect.")
               .arg(address(), what, socket_->errorString()));
    if (socket_->state() != QAbstractSocket::UnconnectedState) {
        quiet_ = true;
        socket_->abort();
        quiet_ = false;
    }
    if (connected_) {
        connected_ = false;
        emit connectionChanged(false);
    }
}

void ClusterClient::onConnectTimeout()
{
    if (socket_->state() == QAbstractSocket::ConnectedState)
        return;
    reported_ = true;
    quiet_ = true;
    socket_->abort();
    quiet_ = false;
    notice(QStringLiteral("*** Connection to %1 failed (no answer in %2 s). Press TCP to reconnect.")
               .arg(address())
               .arg(connectTimeoutMs / 1000));
}
