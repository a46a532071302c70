#include "wsjtx/WsjtxRecord.h"

namespace WsjtxRecord {

QString megahertz(quint64 hz, bool trimmed)
{
    QString text = QString::number(hz / 1000000) + QLatin1Char('.')
        + QStringLiteral("%1").arg(hz % 1000000, 6, 10, QLatin1Char('0'));
    if (!trimmed)
        return text;
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

AdifRecord fromQso(const WsjtxQsoLogged& q)
{
    AdifRecord r;
    const auto put = [&r](const char* name, const QString& value) {
        if (!value.isEmpty())
            r.fields.insert(QLatin1String(name), value);
    };
    const QDateTime on = q.on.toUTC();
    const QDateTime off = q.off.toUTC();
    put("CALL", q.dxCall);
    put("GRIDSQUARE", q.dxGrid);
    put("QSO_DATE", on.date().toString(QStringLiteral("yyyyMMdd")));
    put("TIME_ON", on.time().toString(QStringLiteral("HHmmss")));
    put("QSO_DATE_OFF", off.date().toString(QStringLiteral("yyyyMMdd")));
    put("TIME_OFF", off.time().toString(QStringLiteral("HHmmss")));
    put("FREQ", q.txHz > 0 ? megahertz(q.txHz) : QString());
    put("MODE", q.mode);
    put("RST_SENT", q.reportSent);
    put("RST_RCVD", q.reportReceived);
    put("TX_PWR", q.txPower);
    put("COMMENT", q.comments);
    put("NAME", q.name);
    put("OPERATOR", q.operatorCall);
    put("STATION_CALLSIGN", q.myCall);
    put("MY_GRIDSQUARE", q.myGrid);
    put("STX_STRING", q.exchangeSent);
    put("SRX_STRING", q.exchangeReceived);
    put("PROP_MODE", q.propagation);
    return r;
}

bool fromAdif(const QString& adif, AdifRecord& record, QString* reason)
{
    AdifReader reader(adif.toUtf8());
    QString firstError;
    while (reader.next(record)) {
        if (record.error.isEmpty())
            return true;
        if (firstError.isEmpty())
            firstError = record.error;
    }
    if (reason)
        *reason = firstError.isEmpty() ? QStringLiteral("no ADIF record") : firstError;
    return false;
}

} // namespace WsjtxRecord
