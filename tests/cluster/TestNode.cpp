#include "tests/cluster/TestNode.h"

#include <QTest>

TestNode::TestNode()
{
    server_.listen(QHostAddress::LocalHost, 0);
    connect(&server_, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* s = server_.nextPendingConnection()) {
            ++connections_;
            client_ = s;
            connect(s, &QTcpSocket::readyRead, this, [this, s] { received_ += s->readAll(); });
        }
    });
}

void TestNode::send(const QByteArray& bytes)
{
    if (client_)
        client_->write(bytes);
}

void TestNode::dropClient()
{
    if (client_) {
        client_->flush();
        client_->disconnectFromHost();
    }
}

bool TestNode::waitForReceived(const QByteArray& bytes, int timeoutMs)
{
    return QTest::qWaitFor([&] { return received_ == bytes; }, timeoutMs);
}

bool TestNode::waitForClient(int timeoutMs)
{
    return QTest::qWaitFor([&] { return hasClient(); }, timeoutMs);
}
