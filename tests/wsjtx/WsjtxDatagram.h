#pragma once
// Datagrams as WSJT-X writes them (NetworkMessage.hpp): the header and the fields of each type
// through Qt's QDataStream in the version of the schema, strings as UTF-8 byte arrays.
#include "wsjtx/WsjtxMessage.h"

#include <QDataStream>
#include <QIODevice>

class WsjtxDatagram {
public:
    WsjtxDatagram(quint32 type, const QString& id, quint32 schema = 3)
        : out_(&bytes_, QIODevice::WriteOnly)
    {
        out_.setVersion(schema >= 3 ? QDataStream::Qt_5_4 : QDataStream::Qt_5_2);
        out_ << quint32(0xadbccbda) << schema << type;
        utf8(id);
    }

    WsjtxDatagram& utf8(const QString& text)
    {
        out_ << text.toUtf8();
        return *this;
    }
    WsjtxDatagram& raw(const QByteArray& bytes) // a string field with these exact bytes
    {
        out_ << bytes;
        return *this;
    }
    template <typename T> WsjtxDatagram& number(T value)
    {
        out_ << value;
        return *this;
    }
    WsjtxDatagram& dateTime(const QDateTime& t)
    {
        out_ << t;
        return *this;
    }
    QByteArray bytes() const { return bytes_; }

    static QByteArray heartbeat(const QString& id, quint32 schema = 3)
    {
        return WsjtxDatagram(WsjtxMessage::Heartbeat, id, schema)
            .number(quint32(3))
            .utf8(QStringLiteral("2.6.1"))
            .utf8(QStringLiteral("abc123"))
            .bytes();
    }
    static QByteArray status(const QString& id, const WsjtxStatus& s, quint32 schema = 3)
    {
        return WsjtxDatagram(WsjtxMessage::Status, id, schema)
            .number(quint64(s.dialHz))
            .utf8(s.mode)
            .utf8(s.dxCall)
            .utf8(s.report)
            .utf8(s.txMode)
            .number(s.txEnabled)
            .number(s.transmitting)
            .number(s.decoding)
            .number(quint32(s.rxDf))
            .number(quint32(s.txDf))
            .utf8(s.deCall)
            .utf8(s.deGrid)
            .utf8(s.dxGrid)
            .number(false) // Tx watchdog
            .utf8(QString()) // submode
            .number(false) // fast mode
            .number(quint8(0)) // special operation
            .number(quint32(10)) // frequency tolerance
            .number(quint32(15)) // T/R period
            .utf8(QStringLiteral("Default"))
            .utf8(QString()) // Tx message
            .bytes();
    }
    // withLaterFields false: as WSJT-X wrote it before the operator and own station fields.
    static QByteArray qsoLogged(
        const QString& id, const WsjtxQsoLogged& q, quint32 schema = 3, bool withLaterFields = true)
    {
        WsjtxDatagram d(WsjtxMessage::QsoLogged, id, schema);
        d.dateTime(q.off)
            .utf8(q.dxCall)
            .utf8(q.dxGrid)
            .number(quint64(q.txHz))
            .utf8(q.mode)
            .utf8(q.reportSent)
            .utf8(q.reportReceived)
            .utf8(q.txPower)
            .utf8(q.comments)
            .utf8(q.name)
            .dateTime(q.on);
        if (withLaterFields)
            d.utf8(q.operatorCall)
                .utf8(q.myCall)
                .utf8(q.myGrid)
                .utf8(q.exchangeSent)
                .utf8(q.exchangeReceived)
                .utf8(q.propagation);
        return d.bytes();
    }
    static QByteArray loggedAdif(const QString& id, const QString& adif, quint32 schema = 3)
    {
        return WsjtxDatagram(WsjtxMessage::LoggedAdif, id, schema).utf8(adif).bytes();
    }
    static QByteArray close(const QString& id) { return WsjtxDatagram(WsjtxMessage::Close, id).bytes(); }

private:
    QByteArray bytes_;
    QDataStream out_;
};

// A Status with the fields the tests look at.
inline WsjtxStatus wsjtxStatus(
    quint64 dialHz, const QString& mode, const QString& dxCall, const QString& dxGrid = {})
{
    WsjtxStatus s;
    s.dialHz = dialHz;
    s.mode = mode;
    s.dxCall = dxCall;
    s.dxGrid = dxGrid;
    return s;
}

// A meteor-scatter contact on 2 m as both messages carry it.
inline WsjtxQsoLogged msk144Contact()
{
    WsjtxQsoLogged q;
    q.on = QDateTime(QDate(2026, 11, 15), QTime(18, 20, 7), Qt::UTC);
    q.off = QDateTime(QDate(2026, 11, 15), QTime(18, 24, 30), Qt::UTC);
    q.dxCall = QStringLiteral("OH6ABC");
    q.dxGrid = QStringLiteral("KP22");
    q.txHz = 144361500;
    q.mode = QStringLiteral("MSK144");
    q.reportSent = QStringLiteral("+04");
    q.reportReceived = QStringLiteral("-02");
    q.txPower = QStringLiteral("500");
    q.comments = QStringLiteral("Geminids");
    q.name = QStringLiteral("Jussi");
    q.myCall = QStringLiteral("N0CALL");
    q.myGrid = QStringLiteral("JN48OW");
    q.propagation = QStringLiteral("MS");
    return q;
}

// The Logged ADIF of the same contact, as WSJT-X writes it.
inline QString msk144Adif()
{
    return QStringLiteral("\n<adif_ver:5>3.1.0\n<programid:6>WSJT-X\n<EOH>\n"
                          "<call:6>OH6ABC <gridsquare:4>KP22 <mode:6>MSK144 <rst_sent:3>+04 "
                          "<rst_rcvd:3>-02 <qso_date:8>20261115 <time_on:6>182007 <qso_date_off:8>20261115 "
                          "<time_off:6>182430 <band:2>2m <freq:10>144.361500 <station_callsign:6>N0CALL "
                          "<my_gridsquare:6>JN48OW <tx_pwr:3>500 <comment:8>Geminids <name:5>Jussi "
                          "<prop_mode:2>MS <EOR>");
}
