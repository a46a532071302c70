#include "sim/ClusterServer.h"

#include <QTcpSocket>

ClusterServer::ClusterServer(int spotIntervalMs, SimClusterSession::Style style, QObject* parent)
    : QObject(parent)
    , style_(style)
{
    connect(&server_, &QTcpServer::newConnection, this, &ClusterServer::onNewConnection);
    spotTimer_.setInterval(spotIntervalMs);
    connect(&spotTimer_, &QTimer::timeout, this, [this] { sendSpot(source_.next()); });
}

bool ClusterServer::listen(quint16 port)
{
    if (!server_.listen(QHostAddress::LocalHost, port))
        return false;
    spotTimer_.start();
    return true;
}

void ClusterServer::onNewConnection()
{
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
        sessions_.insert(socket, SimClusterSession(QStringLiteral("KESTREL-SIM"), style_));
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadyRead(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            sessions_.remove(socket);
            socket->deleteLater();
        });
        socket->write(sessions_[socket].greeting());
    }
}

void ClusterServer::onReadyRead(QTcpSocket* socket)
{
    auto it = sessions_.find(socket);
    if (it == sessions_.end())
        return;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const SimClusterSession::Result r = it->receive(socket->readAll(), now);
    socket->write(r.out);
    if (r.loggedIn)
        socket->write(it->spot(source_.next(), now)); // something to look at straight away
    if (r.announced) {
        ++userSpots_;
        sendSpot(*r.announced);
    }
    if (r.close)
        socket->disconnectFromHost();
}

void ClusterServer::sendSpot(const SimSpot& spot)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (auto it = sessions_.begin(); it != sessions_.end(); ++it)
        it.key()->write(it->spot(spot, now));
}

QString ClusterServer::stateLine() const
{
    int loggedIn = 0;
    for (const SimClusterSession& s : sessions_)
        loggedIn += s.isLoggedIn() ? 1 : 0;
    return QStringLiteral("cluster port=%1 connections=%2 logged_in=%3 spots=%4 user_spots=%5")
        .arg(port())
        .arg(sessions_.size())
        .arg(loggedIn)
        .arg(source_.handedOut())
        .arg(userSpots_);
}

void ClusterServer::close()
{
    spotTimer_.stop();
    server_.close();
    const auto sockets = sessions_.keys();
    sessions_.clear();
    for (QTcpSocket* socket : sockets) {
        socket->disconnect(this);
        socket->abort();
        socket->deleteLater();
    }
}
