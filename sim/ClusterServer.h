#pragma once
// The simulated DX cluster node on 127.0.0.1: one SimClusterSession per connection, a spot for
// every logged-in user now and then, and a spot sent by a user passed on to everybody.
#include "sim/devices/SimClusterSession.h"

#include <QHash>
#include <QObject>
#include <QTcpServer>
#include <QTimer>

class QTcpSocket;

class ClusterServer : public QObject {
    Q_OBJECT
public:
    explicit ClusterServer(int spotIntervalMs,
        SimClusterSession::Style style = SimClusterSession::Style::Plain, QObject* parent = nullptr);

    // Port 0: any free port. False with errorText() when listening fails.
    bool listen(quint16 port);
    quint16 port() const { return server_.serverPort(); }
    QString errorText() const { return server_.errorString(); }
    QString stateLine() const;
    void close();

private:
    void onNewConnection();
    void onReadyRead(QTcpSocket* socket);
    void sendSpot(const SimSpot& spot);

    QTcpServer server_;
    QTimer spotTimer_;
    SimClusterSession::Style style_;
    SimSpotSource source_;
    QHash<QTcpSocket*, SimClusterSession> sessions_;
    int userSpots_ = 0;
};
