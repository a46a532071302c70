#pragma once
// A TCP server that answers text lines: each client's bytes are cut at "\n" and every line
// handed to the answerer; the answer goes back to that client. Bounded per client: a line
// longer than kMaxLine or more than kMaxPending unread answer bytes drops the client, so no
// client can hold the window or the others up, nor grow the memory.
#include <QHostAddress>
#include <QObject>
#include <QTcpServer>

#include <functional>

class QTcpSocket;

class LineServer : public QObject {
    Q_OBJECT
public:
    struct Reply {
        QByteArray bytes;
        bool close = false;
    };
    using Answerer = std::function<Reply(const QByteArray& line)>;

    static constexpr qsizetype kMaxLine = 4096;
    static constexpr qint64 kMaxPending = 256 * 1024;

    LineServer(const QString& name, Answerer answerer, QObject* parent = nullptr);

    // port 0: any free port. False (and the reason logged and in errorText()) when it cannot listen.
    bool listen(const QHostAddress& address, quint16 port);
    quint16 port() const { return server_.serverPort(); }
    bool isListening() const { return server_.isListening(); }
    QString errorText() const { return server_.errorString(); }
    int clientCount() const { return clients_; }

signals:
    void clientCountChanged(int count);

private:
    void accept();
    void readFrom(QTcpSocket* socket);
    void drop(QTcpSocket* socket, const char* why);

    QString name_;
    Answerer answerer_;
    QTcpServer server_;
    int clients_ = 0;
};
