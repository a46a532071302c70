#include "hub/LineServer.h"

#include "hub/HubLog.h"

#include <QTcpSocket>

LineServer::LineServer(const QString& name, Answerer answerer, QObject* parent)
    : QObject(parent)
    , name_(name)
    , answerer_(std::move(answerer))
{
    connect(&server_, &QTcpServer::newConnection, this, &LineServer::accept);
}

bool LineServer::listen(const QHostAddress& address, quint16 port)
{
    if (server_.listen(address, port)) {
        qCInfo(lcHub) << name_ << "listening on" << address.toString() << server_.serverPort();
        return true;
    }
    qCWarning(lcHub) << name_ << "cannot listen on" << address.toString() << port << server_.errorString();
    return false;
}

void LineServer::accept()
{
    while (QTcpSocket* socket = server_.nextPendingConnection()) {
        ++clients_;
        emit clientCountChanged(clients_);
        socket->setParent(this);
        // Answers are small and awaited one by one: no Nagle delay.
        socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        // Qt stops taking bytes from the system beyond this, so a flood waits in the kernel.
        socket->setReadBufferSize(4 * kMaxLine);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readFrom(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            --clients_;
            emit clientCountChanged(clients_);
            socket->deleteLater();
        });
    }
}

void LineServer::readFrom(QTcpSocket* socket)
{
    while (socket->state() == QAbstractSocket::ConnectedState) {
        if (!socket->canReadLine()) {
            if (socket->bytesAvailable() > kMaxLine)
                drop(socket, "line too long");
            return;
        }
        const QByteArray line = socket->readLine(kMaxLine + 1);
        if (!line.endsWith('\n')) {
            drop(socket, "line too long");
            return;
        }
        const Reply reply = answerer_(line.chopped(1));
        socket->write(reply.bytes);
        if (reply.close) {
            socket->disconnectFromHost();
            return;
        }
        if (socket->bytesToWrite() > kMaxPending) {
            drop(socket, "not reading its answers");
            return;
        }
    }
}

void LineServer::drop(QTcpSocket* socket, const char* why)
{
    qCInfo(lcHub) << name_ << "dropping client" << socket->peerAddress().toString() << socket->peerPort()
                  << why;
    socket->abort();
}
