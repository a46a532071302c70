#pragma once
// One connection to the simulated DX cluster node: asks for a callsign ("login: "), echoes every
// line it receives, takes "dx FREQ CALL comment" as a spot of its user, and ends on "bye".
// In the telnet style it talks like many real nodes: telnet negotiation first, a UTF-8
// greeting, spots in ANSI colour with a bell and LF CR line ends; the client's telnet
// commands are skipped. Pure: bytes in, bytes out; the node's TCP server does the I/O.
#include "sim/devices/SimSpot.h"

#include <QByteArray>
#include <QDateTime>
#include <optional>

class SimClusterSession {
public:
    enum class Style { Plain, Telnet };
    explicit SimClusterSession(
        const QString& nodeCall = QStringLiteral("KESTREL-SIM"), Style style = Style::Plain);

    // What the node sends right after the connection is made.
    QByteArray greeting() const;

    struct Result {
        QByteArray out;
        bool loggedIn = false; // the callsign was given with these bytes
        bool close = false; // send `out`, then close the connection
        std::optional<SimSpot> announced; // a spot the user sent, for every session
    };
    Result receive(const QByteArray& bytes, const QDateTime& utc);

    // A spot line for this session; nothing before the user has logged in.
    QByteArray spot(const SimSpot& spot, const QDateTime& utc) const;

    bool isLoggedIn() const { return !call_.isEmpty(); }
    QString callsign() const { return call_; }
    bool isClosed() const { return closed_; }

private:
    void line(const QString& text, const QDateTime& utc, Result& r);
    QByteArray prompt(const QDateTime& utc) const;

    QString node_;
    Style style_;
    enum class Command { None, AfterIac, Option } command_ = Command::None; // the client's telnet command
    QString call_;
    QByteArray pending_;
    bool closed_ = false;
    bool lastWasCr_ = false;
};
