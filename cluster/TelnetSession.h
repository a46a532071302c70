#pragma once
// The telnet layer of a cluster connection, done by libtelnet: the node's option negotiation
// is answered by refusing every option (WONT to a DO, DONT to a WILL), its commands are taken
// out, a doubled 0xFF becomes one, and what remains is the node's text. Text we send has its
// 0xFF bytes doubled. One session per connection.
#include <QByteArray>
#include <QByteArrayView>

struct telnet_t;
union telnet_event_t;

class TelnetSession {
public:
    TelnetSession();
    ~TelnetSession();
    TelnetSession(const TelnetSession&) = delete;
    TelnetSession& operator=(const TelnetSession&) = delete;

    struct Received {
        QByteArray text; // the node's text, telnet commands removed
        QByteArray answer; // to be sent back to the node at once
    };
    Received receive(QByteArrayView bytes);
    // The bytes to send for this text.
    QByteArray encode(QByteArrayView text);
    // A new connection: forget any half-received command.
    void reset();

private:
    static void onEvent(telnet_t* telnet, telnet_event_t* event, void* self);

    telnet_t* telnet_ = nullptr;
    QByteArray* text_ = nullptr; // where the current call collects
    QByteArray* out_ = nullptr;
};
