#pragma once
// The connection to a DX cluster node: owns the TCP socket ("socket"), answers the node's
// telnet negotiation, turns what arrives into terminal text and parsed spots, logs in by itself
// when asked to, and hands them to a view in batches so a flooding node
// never stalls the window. Reads in slices; failed and dropped connections become notice lines.
#include "cluster/SpotLines.h"
#include "cluster/SpotTableModel.h"
#include "cluster/TelnetSession.h"
#include "cluster/TerminalText.h"

#include <QAbstractSocket>
#include <QObject>
#include <QTimer>

class QTcpSocket;

class ClusterClient : public QObject {
    Q_OBJECT
public:
    explicit ClusterClient(QObject* parent = nullptr);

    QTcpSocket* socket() const { return socket_; }
    TerminalText& terminal() { return terminal_; }
    SpotTableModel* spots() const { return spots_; }
    const ClusterServer& server() const { return server_; }
    bool isConnected() const;
    // Spots parsed since this client was made (the table keeps only the newest).
    qint64 spotsParsed() const { return spotsParsed_; }

    // Closes and resets the socket, then connects to the server.
    void connectTo(const ClusterServer& server);
    // Closes the socket quietly (the window goes away).
    void close();
    // Sends text followed by "\r\n", one byte per character; false and a notice line when
    // there is no connection.
    bool send(const QString& text);
    // At the node's "login:" prompt the callsign is sent once per connection; "" never.
    void setAutoLogin(const QString& callsign) { autoLogin_ = callsign; }
    // The unfinished line is a login prompt: it ends in "login:" (blanks and case aside).
    static bool isLoginPrompt(const QString& openLine);

    static constexpr int flushIntervalMs = 50;
    static constexpr int connectTimeoutMs = 15000;

signals:
    // Terminal text or spots changed; emitted at most once per flush interval.
    void terminalChanged();
    void connectionChanged(bool connected);

private:
    void readSome();
    void drain();
    void feed(const QByteArray& bytes);
    void flush();
    void scheduleFlush();
    void notice(const QString& text);
    QString address() const;
    void onConnected();
    void onDisconnected();
    void onError(QAbstractSocket::SocketError error);
    void onConnectTimeout();

    QTcpSocket* socket_;
    TerminalText terminal_;
    TelnetSession telnet_;
    QString autoLogin_;
    bool loginSent_ = false;
    SpotTableModel* spots_;
    QList<Spot> pendingSpots_;
    ClusterServer server_;
    QTimer flushTimer_;
    QTimer connectTimer_;
    bool readScheduled_ = false;
    bool connected_ = false;
    bool quiet_ = false; // our own abort: no notice
    bool reported_ = false;
    qint64 spotsParsed_ = 0;
};
