#pragma once
// The UDP end of WSJT-X's reporting: receives datagrams on a unicast or multicast address,
// decodes them (WsjtxCodec), keeps the last Status of each sender (told apart by its id) while
// it is live, and hands logged contacts to WsjtxContactLog. A bad datagram is dropped with
// one line in kestrel.wsjtx.
#include "wsjtx/WsjtxContactLog.h"
#include "wsjtx/WsjtxMessage.h"

#include <QElapsedTimer>
#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QTimer>

#include <memory>

class QUdpSocket;

struct WsjtxSettings {
    bool enabled = false;
    QHostAddress address { QHostAddress::LocalHost };
    quint16 port = 2237;

    // Kestrel.ini's [wsjtx] section (enabled, address, port).
    static WsjtxSettings fromIni();
};

class WsjtxListener : public QObject {
    Q_OBJECT
public:
    // A sender's Status counts as live this long after its last datagram (WSJT-X sends a
    // heartbeat every 15 s).
    static constexpr int LiveMs = 45000;
    // Senders kept at once; a flood of made-up ids cannot grow the table beyond this.
    static constexpr int MaxSenders = 64;

    explicit WsjtxListener(QObject* parent = nullptr);
    WsjtxListener(std::unique_ptr<WsjtxContactLog> log, QObject* parent = nullptr);
    ~WsjtxListener() override;

    // Where logged contacts go; without one they are not saved.
    void setContactLog(std::unique_ptr<WsjtxContactLog> log) { log_ = std::move(log); }

    // Binds (and joins the group of a multicast address); false with error() when it cannot.
    bool listen(const QHostAddress& address, quint16 port);
    quint16 port() const;
    QString error() const { return error_; }

    // One datagram, as it arrived from the socket.
    void receive(const QByteArray& datagram);

    // The live Status last received, and its text for the windows ("" when none is live):
    // "WSJT-X: DL1ABC JO62  144.174 MHz FT8".
    bool hasLiveStatus() const;
    WsjtxStatus liveStatus() const;
    QString statusText() const;

signals:
    void statusChanged(const QString& text);
    // A contact saved in the log.
    void contactSaved(const WorkedContact& contact);

private:
    struct Sender {
        WsjtxStatus status;
        bool hasStatus = false;
        QElapsedTimer seen;
    };
    void readPending();
    void expire();
    // Shows another live sender's Status when the one shown is gone; signals a changed text.
    void refresh();
    void logContact(const QString& id, const AdifRecord& record);

    std::unique_ptr<WsjtxContactLog> log_;
    QUdpSocket* socket_;
    QTimer expiry_;
    QHash<QString, Sender> senders_;
    QString current_; // id of the sender whose Status is shown
    QString shown_;
    QString error_;
};
