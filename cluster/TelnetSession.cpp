#include "cluster/TelnetSession.h"

#include "cluster/ClusterLog.h"

#include <libtelnet.h>

TelnetSession::TelnetSession()
{
    reset();
}

TelnetSession::~TelnetSession()
{
    telnet_free(telnet_);
}

void TelnetSession::reset()
{
    if (telnet_)
        telnet_free(telnet_);
    // No option table: libtelnet refuses every option the node offers or asks for.
    telnet_ = telnet_init(nullptr, &TelnetSession::onEvent, 0, this);
}

TelnetSession::Received TelnetSession::receive(QByteArrayView bytes)
{
    Received r;
    text_ = &r.text;
    out_ = &r.answer;
    telnet_recv(telnet_, bytes.data(), static_cast<size_t>(bytes.size()));
    text_ = out_ = nullptr;
    return r;
}

QByteArray TelnetSession::encode(QByteArrayView text)
{
    QByteArray out;
    out_ = &out;
    telnet_send(telnet_, text.data(), static_cast<size_t>(text.size()));
    out_ = nullptr;
    return out;
}

void TelnetSession::onEvent(telnet_t*, telnet_event_t* event, void* self)
{
    auto* session = static_cast<TelnetSession*>(self);
    switch (event->type) {
    case TELNET_EV_DATA:
        if (session->text_)
            session->text_->append(event->data.buffer, static_cast<qsizetype>(event->data.size));
        break;
    case TELNET_EV_SEND:
        if (session->out_)
            session->out_->append(event->data.buffer, static_cast<qsizetype>(event->data.size));
        break;
    case TELNET_EV_WARNING:
    case TELNET_EV_ERROR:
        qCDebug(lcCluster) << "telnet:" << event->error.msg;
        break;
    default:
        break;
    }
}
