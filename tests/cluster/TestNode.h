#pragma once
// A cluster node for tests: a QTcpServer on 127.0.0.1 at a free port that records what its
// client sends and sends what the test gives it.
#include <QByteArray>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

class TestNode : public QObject {
public:
    TestNode();

    quint16 port() const { return server_.serverPort(); }
    bool hasClient() const { return !client_.isNull(); }
    int connections() const { return connections_; }
    // Everything the client sent so far.
    QByteArray received() const { return received_; }

    void send(const QByteArray& bytes);
    // Closes the client's connection from the node's side.
    void dropClient();
    // Waits (serving events) until `bytes` have arrived in total; false after the timeout.
    bool waitForReceived(const QByteArray& bytes, int timeoutMs = 5000);
    bool waitForClient(int timeoutMs = 5000);

private:
    QTcpServer server_;
    QPointer<QTcpSocket> client_;
    QByteArray received_;
    int connections_ = 0;
};
