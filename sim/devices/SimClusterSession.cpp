#include "sim/devices/SimClusterSession.h"

#include <QRegularExpression>

namespace {

const QByteArray kEnd = "\r\n";

QByteArray latin1(const QString& s)
{
    return s.toLatin1();
}

} // namespace

SimClusterSession::SimClusterSession(const QString& nodeCall, Style style)
    : node_(nodeCall)
    , style_(style)
{
}

QByteArray SimClusterSession::greeting() const
{
    if (style_ == Style::Telnet) {
        // IAC WILL ECHO, IAC WILL SUPPRESS-GO-AHEAD, IAC DO NAWS
        return QByteArray("\xff\xfb\x01\xff\xfb\x03\xff\xfd\x1f") + kEnd + "Welcome to " + node_.toUtf8()
            + ", Grüße aus Köln, the simulated DX cluster node of Kestrel." + kEnd + kEnd
            + "\x1b[1mPlease enter your call.\x1b[0m" + kEnd + "login: ";
    }
    return kEnd + "Welcome to " + latin1(node_) + ", the simulated DX cluster node of Kestrel." + kEnd + kEnd
        + "Please enter your call." + kEnd + "login: ";
}

QByteArray SimClusterSession::prompt(const QDateTime& utc) const
{
    return latin1(call_ + QStringLiteral(" de ") + node_ + QLatin1Char(' ')
               + utc.toUTC().toString(QStringLiteral("dd-MMM-yyyy HHmm")) + QStringLiteral("Z >"))
        + kEnd;
}

SimClusterSession::Result SimClusterSession::receive(const QByteArray& bytes, const QDateTime& utc)
{
    Result r;
    if (closed_)
        return r;
    for (char c : bytes) {
        // The client's telnet commands: IAC and a command; WILL, WONT, DO, DONT take an option.
        const auto u = static_cast<unsigned char>(c);
        if (command_ == Command::AfterIac) {
            command_ = u >= 251 && u <= 254 ? Command::Option : Command::None;
            if (u != 255) // IAC IAC is the byte 255 itself
                continue;
        } else if (command_ == Command::Option) {
            command_ = Command::None;
            continue;
        } else if (style_ == Style::Telnet && u == 255) {
            command_ = Command::AfterIac;
            continue;
        }
        // A line ends at CR, LF or CR LF; the LF after a CR adds no empty line.
        if (c == '\n' && lastWasCr_) {
            lastWasCr_ = false;
            continue;
        }
        lastWasCr_ = c == '\r';
        if (c == '\r' || c == '\n') {
            line(QString::fromLatin1(pending_), utc, r);
            pending_.clear();
            if (closed_)
                break;
        } else if (c == '\b' || c == 0x7f) {
            pending_.chop(1);
        } else {
            pending_ += c;
        }
    }
    return r;
}

void SimClusterSession::line(const QString& text, const QDateTime& utc, Result& r)
{
    r.out += latin1(text) + kEnd; // the echo
    const QString typed = text.trimmed();
    if (!isLoggedIn()) {
        if (typed.isEmpty() || typed.contains(QLatin1Char(' '))) {
            r.out += "Please enter your call." + kEnd + "login: ";
            return;
        }
        call_ = typed.toUpper();
        r.loggedIn = true;
        r.out += "Hello " + latin1(call_) + ", this is " + latin1(node_) + ". Spots follow as they come in."
            + kEnd + "Send \"dx FREQ CALL comment\" to spot, \"bye\" to leave." + kEnd + prompt(utc);
        return;
    }
    const QString lower = typed.toLower();
    if (lower == QLatin1String("bye") || lower == QLatin1String("quit") || lower == QLatin1String("q")) {
        r.out += "73 de " + latin1(node_) + ", " + latin1(call_) + " disconnected." + kEnd;
        r.close = true;
        closed_ = true;
        return;
    }
    if (lower.startsWith(QLatin1String("dx "))) {
        static const QRegularExpression form(
            QStringLiteral("^dx\\s+(\\S+)\\s+(\\S+)\\s*(.*)$"), QRegularExpression::CaseInsensitiveOption);
        const QRegularExpressionMatch m = form.match(typed);
        bool ok = false;
        const double khz = m.hasMatch() ? m.captured(1).toDouble(&ok) : 0.0;
        if (!ok || khz <= 0.0) {
            r.out += "Sorry, \"" + latin1(typed) + "\" is not a spot: dx FREQ CALL comment" + kEnd
                + prompt(utc);
            return;
        }
        r.announced = SimSpot { call_, khz, m.captured(2).toUpper(), m.captured(3).trimmed() };
        return; // the node sends the spot line to everybody, this session too
    }
    r.out += prompt(utc);
}

QByteArray SimClusterSession::spot(const SimSpot& spot, const QDateTime& utc) const
{
    if (!isLoggedIn() || closed_)
        return {};
    if (style_ == Style::Telnet)
        return "\a\x1b[1;32m" + spot.line(utc.toUTC().time()).toUtf8() + "\x1b[0m\n\r";
    return spot.line(utc.toUTC().time()).toLatin1() + kEnd;
}
