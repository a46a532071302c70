#pragma once
// One datagram of WSJT-X's UDP reporting (also sent by JTDX and JS8Call), as far as the
// logbook reads it: Heartbeat, Status, QSO Logged, Close and Logged ADIF. Other types are
// known by number only.
#include <QDateTime>
#include <QString>

struct WsjtxStatus {
    quint64 dialHz = 0;
    QString mode;
    QString dxCall;
    QString report;
    QString txMode;
    bool txEnabled = false;
    bool transmitting = false;
    bool decoding = false;
    quint32 rxDf = 0;
    quint32 txDf = 0;
    QString deCall;
    QString deGrid;
    QString dxGrid;
};

struct WsjtxQsoLogged {
    QDateTime off;
    QString dxCall;
    QString dxGrid;
    quint64 txHz = 0;
    QString mode;
    QString reportSent;
    QString reportReceived;
    QString txPower;
    QString comments;
    QString name;
    QDateTime on;
    // Sent by newer versions only; empty when the datagram ends before them.
    QString operatorCall;
    QString myCall;
    QString myGrid;
    QString exchangeSent;
    QString exchangeReceived;
    QString propagation;
};

struct WsjtxMessage {
    enum Type : quint32 { Heartbeat = 0, Status = 1, QsoLogged = 5, Close = 6, LoggedAdif = 12 };
    quint32 schema = 0;
    quint32 type = 0;
    QString id; // the sender ("WSJT-X", "JTDX", or a name the operator gave with --rig-name)
    // Heartbeat
    quint32 maxSchema = 0;
    QString version;
    QString revision;
    WsjtxStatus status;
    WsjtxQsoLogged qso;
    QString adif; // Logged ADIF: one record with its header
};
