#pragma once
// One connection to the simulated DX cluster node: asks for a callsign ("login: "), echoes every
// line it receives, takes "dx FREQ CALL comment" as a spot of its user, and ends on "bye".
// Pure: text in, text out; the node's TCP server does the I/O and hands out the spots.
#include "sim/devices/SimSpot.h"

#include <QByteArray>
#include <QDateTime>
#include <optional>

class SimClusterSession {
public:
    explicit SimClusterSession(const QString& nodeCall = QStringLiteral("KESTREL-SIM"));

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
    QString call_;
    QByteArray pending_;
    bool closed_ = false;
    bool lastWasCr_ = false;
};
