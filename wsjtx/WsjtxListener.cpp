#include "wsjtx/WsjtxListener.h"

#include "core/ExtensionSettings.h"
#include "wsjtx/WsjtxCodec.h"
#include "wsjtx/WsjtxLog.h"
#include "wsjtx/WsjtxRecord.h"

#include <QNetworkDatagram>
#include <QUdpSocket>

WsjtxSettings WsjtxSettings::fromIni()
{
    WsjtxSettings s;
    s.enabled = ExtensionSettings::value(ExtensionKey::WsjtxEnabled).trimmed().toLower() == u"true";
    const QHostAddress address(ExtensionSettings::value(ExtensionKey::WsjtxAddress).trimmed());
    if (!address.isNull())
        s.address = address;
    bool ok = false;
    const uint port = ExtensionSettings::value(ExtensionKey::WsjtxPort).toUInt(&ok);
    if (ok && port > 0 && port < 65536)
        s.port = quint16(port);
    return s;
}

WsjtxListener::WsjtxListener(QObject* parent)
    : WsjtxListener(nullptr, parent)
{
}

WsjtxListener::WsjtxListener(std::unique_ptr<WsjtxContactLog> log, QObject* parent)
    : QObject(parent)
    , log_(std::move(log))
    , socket_(new QUdpSocket(this))
{
    connect(socket_, &QUdpSocket::readyRead, this, &WsjtxListener::readPending);
    expiry_.setInterval(1000);
    connect(&expiry_, &QTimer::timeout, this, &WsjtxListener::expire);
}

WsjtxListener::~WsjtxListener() = default;

bool WsjtxListener::listen(const QHostAddress& address, quint16 port)
{
    const bool multicast = address.isMulticast();
    // Several programs may listen to one group, as WSJT-X's own tools do.
    const bool bound = multicast
        ? socket_->bind(address.protocol() == QAbstractSocket::IPv6Protocol ? QHostAddress::AnyIPv6
                                                                            : QHostAddress::AnyIPv4,
            port, QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint)
        : socket_->bind(address, port);
    if (!bound || (multicast && !socket_->joinMulticastGroup(address))) {
        error_ = socket_->errorString();
        qCWarning(lcWsjtx) << "cannot listen on" << address.toString() << port << ":" << error_;
        socket_->close();
        return false;
    }
    qCInfo(lcWsjtx) << "listening on" << address.toString() << socket_->localPort();
    expiry_.start();
    return true;
}

quint16 WsjtxListener::port() const
{
    return socket_->localPort();
}

void WsjtxListener::readPending()
{
    while (socket_->hasPendingDatagrams())
        receive(socket_->receiveDatagram().data());
}

void WsjtxListener::receive(const QByteArray& datagram)
{
    const WsjtxDecoded d = WsjtxCodec::decode(datagram);
    if (!d.ok) {
        qCWarning(lcWsjtx).noquote() << "dropped a datagram of" << datagram.size() << "bytes:" << d.error;
        return;
    }
    const WsjtxMessage& m = d.message;
    if (!senders_.contains(m.id) && senders_.size() >= MaxSenders) {
        qCWarning(lcWsjtx).noquote() << "dropped a datagram of a sender beyond" << MaxSenders << ":" << m.id;
        return;
    }
    Sender& sender = senders_[m.id];
    sender.seen.start();
    switch (m.type) {
    case WsjtxMessage::Status:
        sender.status = m.status;
        sender.hasStatus = true;
        current_ = m.id;
        break;
    case WsjtxMessage::Close:
        senders_.remove(m.id);
        break;
    case WsjtxMessage::QsoLogged:
        logContact(m.id, WsjtxRecord::fromQso(m.qso));
        break;
    case WsjtxMessage::LoggedAdif: {
        AdifRecord record;
        QString reason;
        if (WsjtxRecord::fromAdif(m.adif, record, &reason))
            logContact(m.id, record);
        else
            qCWarning(lcWsjtx).noquote() << m.id << "logged ADIF without a contact:" << reason;
        break;
    }
    default:
        break;
    }
    refresh();
}

void WsjtxListener::logContact(const QString& id, const AdifRecord& record)
{
    if (!log_)
        return;
    const WsjtxContactLog::Outcome o = log_->log(record);
    switch (o.kind) {
    case WsjtxContactLog::Outcome::Saved:
        qCInfo(lcWsjtx).noquote() << id << "logged" << o.callsign;
        emit contactSaved(o.saved);
        break;
    case WsjtxContactLog::Outcome::AlreadyLogged:
        qCDebug(lcWsjtx).noquote() << id << "sent" << o.callsign << "again";
        break;
    case WsjtxContactLog::Outcome::Refused:
    case WsjtxContactLog::Outcome::Failed:
        qCWarning(lcWsjtx).noquote() << id << "contact" << o.callsign << "not logged:" << o.text;
        break;
    }
}

void WsjtxListener::expire()
{
    for (auto it = senders_.begin(); it != senders_.end();) {
        if (it->seen.hasExpired(LiveMs))
            it = senders_.erase(it);
        else
            ++it;
    }
    refresh();
}

void WsjtxListener::refresh()
{
    if (!senders_.contains(current_) || !senders_[current_].hasStatus) {
        // Another sender's Status stays on show when the one shown went quiet.
        current_.clear();
        for (auto it = senders_.cbegin(); it != senders_.cend(); ++it) {
            if (it->hasStatus)
                current_ = it.key();
        }
    }
    const QString text = statusText();
    if (text != shown_) {
        shown_ = text;
        emit statusChanged(text);
    }
}

bool WsjtxListener::hasLiveStatus() const
{
    const auto it = senders_.constFind(current_);
    return it != senders_.cend() && it->hasStatus;
}

WsjtxStatus WsjtxListener::liveStatus() const
{
    return hasLiveStatus() ? senders_.value(current_).status : WsjtxStatus {};
}

QString WsjtxListener::statusText() const
{
    if (!hasLiveStatus())
        return {};
    const WsjtxStatus s = liveStatus();
    QStringList dx;
    for (const QString& part : { s.dxCall, s.dxGrid }) {
        if (!part.isEmpty())
            dx << part;
    }
    return QStringLiteral("%1: %2  %3 MHz %4")
        .arg(current_, dx.join(QLatin1Char(' ')), WsjtxRecord::megahertz(s.dialHz, true), s.mode)
        .trimmed();
}
