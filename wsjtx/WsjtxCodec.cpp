#include "wsjtx/WsjtxCodec.h"

#include <QStringDecoder>
#include <QTimeZone>
#include <QtEndian>

namespace {

// Reads the QDataStream encoding by hand, so that no length in the datagram is trusted
// before it is checked against what is left.
class FieldReader {
public:
    explicit FieldReader(const QByteArray& data)
        : data_(data)
    {
    }

    bool atEnd() const { return pos_ == data_.size(); }
    const QString& error() const { return error_; }
    bool failed() const { return !error_.isEmpty(); }

    template <typename T> T number(const char* field)
    {
        if (!take(sizeof(T), field))
            return T {};
        const T v = qFromBigEndian<T>(data_.constData() + pos_ - sizeof(T));
        return v;
    }
    bool flag(const char* field) { return number<quint8>(field) != 0; }

    QString utf8(const char* field)
    {
        const quint32 length = number<quint32>(field);
        if (failed() || length == 0xffffffffu)
            return {};
        if (!take(length, field))
            return {};
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        QString text = decoder(QByteArrayView(data_.constData() + pos_ - length, length));
        if (decoder.hasError())
            fail(QStringLiteral("%1 is not UTF-8").arg(QLatin1String(field)));
        return text;
    }

    QDateTime dateTime(const char* field)
    {
        const qint64 julianDay = number<qint64>(field);
        const quint32 ms = number<quint32>(field);
        const quint8 zoneKind = number<quint8>(field);
        if (failed())
            return {};
        const QDate date = QDate::fromJulianDay(julianDay);
        const QTime time = QTime::fromMSecsSinceStartOfDay(int(ms));
        if (!date.isValid() || ms >= 86400000u || !time.isValid()) {
            fail(QStringLiteral("%1 is no valid date and time").arg(QLatin1String(field)));
            return {};
        }
        switch (zoneKind) {
        case 0:
            return QDateTime(date, time, Qt::LocalTime);
        case 1:
            return QDateTime(date, time, Qt::UTC);
        case 2: {
            const qint32 offset = number<qint32>(field);
            if (failed() || offset < -14 * 3600 || offset > 14 * 3600)
                break;
            return QDateTime(date, time, Qt::OffsetFromUTC, offset);
        }
        case 3: {
            const QTimeZone zone(utf16(field).toLatin1());
            if (failed() || !zone.isValid())
                break;
            return QDateTime(date, time, zone);
        }
        default:
            break;
        }
        if (!failed())
            fail(QStringLiteral("%1 has no valid time zone").arg(QLatin1String(field)));
        return {};
    }

    void fail(const QString& why)
    {
        if (error_.isEmpty())
            error_ = why;
    }

private:
    // QString as QDataStream writes it (the IANA name of a time zone).
    QString utf16(const char* field)
    {
        const quint32 length = number<quint32>(field);
        if (failed() || length == 0xffffffffu)
            return {};
        if (length % 2 != 0 || !take(length, field)) {
            fail(QStringLiteral("%1 is cut short").arg(QLatin1String(field)));
            return {};
        }
        QString text(qsizetype(length / 2), Qt::Uninitialized);
        qFromBigEndian<char16_t>(data_.constData() + pos_ - length, length / 2, text.data());
        return text;
    }

    bool take(qsizetype size, const char* field)
    {
        if (failed())
            return false;
        if (size > data_.size() - pos_) {
            fail(QStringLiteral("%1 is cut short").arg(QLatin1String(field)));
            return false;
        }
        pos_ += size;
        return true;
    }

    const QByteArray& data_;
    qsizetype pos_ = 0;
    QString error_;
};

void readStatus(FieldReader& r, WsjtxStatus& s)
{
    s.dialHz = r.number<quint64>("dial frequency");
    s.mode = r.utf8("mode");
    s.dxCall = r.utf8("DX call");
    s.report = r.utf8("report");
    s.txMode = r.utf8("Tx mode");
    s.txEnabled = r.flag("Tx enabled");
    s.transmitting = r.flag("transmitting");
    s.decoding = r.flag("decoding");
    s.rxDf = r.number<quint32>("Rx DF");
    s.txDf = r.number<quint32>("Tx DF");
    s.deCall = r.utf8("DE call");
    s.deGrid = r.utf8("DE grid");
    s.dxGrid = r.utf8("DX grid");
}

void readQso(FieldReader& r, WsjtxQsoLogged& q)
{
    q.off = r.dateTime("date and time off");
    q.dxCall = r.utf8("DX call");
    q.dxGrid = r.utf8("DX grid");
    q.txHz = r.number<quint64>("Tx frequency");
    q.mode = r.utf8("mode");
    q.reportSent = r.utf8("report sent");
    q.reportReceived = r.utf8("report received");
    q.txPower = r.utf8("Tx power");
    q.comments = r.utf8("comments");
    q.name = r.utf8("name");
    q.on = r.dateTime("date and time on");
    // Later versions added these one by one at the end.
    const std::pair<QString*, const char*> optional[] = { { &q.operatorCall, "operator call" },
        { &q.myCall, "my call" }, { &q.myGrid, "my grid" }, { &q.exchangeSent, "exchange sent" },
        { &q.exchangeReceived, "exchange received" }, { &q.propagation, "propagation mode" } };
    for (const auto& [target, name] : optional) {
        if (r.failed() || r.atEnd())
            return;
        *target = r.utf8(name);
    }
}

} // namespace

namespace WsjtxCodec {

WsjtxDecoded decode(const QByteArray& datagram)
{
    WsjtxDecoded out;
    FieldReader r(datagram);
    const quint32 magic = r.number<quint32>("magic number");
    if (!r.failed() && magic != Magic) {
        out.error
            = QStringLiteral("not a WSJT-X datagram (magic number %1)").arg(magic, 8, 16, QLatin1Char('0'));
        return out;
    }
    WsjtxMessage& m = out.message;
    m.schema = r.number<quint32>("schema");
    if (!r.failed() && m.schema != 2 && m.schema != 3) {
        out.error = QStringLiteral("unknown schema %1").arg(m.schema);
        return out;
    }
    m.type = r.number<quint32>("message type");
    m.id = r.utf8("sender id");
    switch (m.type) {
    case WsjtxMessage::Heartbeat:
        m.maxSchema = r.number<quint32>("maximum schema");
        m.version = r.utf8("version");
        m.revision = r.utf8("revision");
        break;
    case WsjtxMessage::Status:
        readStatus(r, m.status);
        break;
    case WsjtxMessage::QsoLogged:
        readQso(r, m.qso);
        break;
    case WsjtxMessage::LoggedAdif:
        m.adif = r.utf8("ADIF text");
        break;
    default:
        break;
    }
    out.ok = !r.failed();
    out.error = r.error();
    return out;
}

} // namespace WsjtxCodec
