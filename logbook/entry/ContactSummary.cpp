#include "logbook/entry/ContactSummary.h"

#include "logbook/db/LogDate.h"

#include <QTime>

#include <cmath>

namespace ContactSummary {

QString dateText(const QString& date)
{
    const QDate d = LogDate::parse(date);
    return d.isValid() ? d.toString(QStringLiteral(" dd.MM.yyyy")) : date;
}

QString timeText(const QString& time)
{
    const QString t = time.trimmed();
    for (const char* format : { "HH:mm:ss", "H:mm:ss", "HH:mm", "H:mm", "HHmmss", "HHmm" }) {
        const QTime parsed = QTime::fromString(t, QLatin1String(format));
        if (parsed.isValid())
            return parsed.toString(QStringLiteral("HH:mm"));
    }
    return time;
}

QString numberText(float value)
{
    if (!std::isfinite(value))
        return QString::number(double(value));
    QString s = QString::number(double(value), 'g', 7);
    if (s.contains(QLatin1Char('e')))
        s = s.toUpper(); // 1E+07, as the classic form writes it
    return s;
}

QString text(const SummaryValues& v)
{
    return QStringLiteral("Log: ") + v.callsign + QLatin1Char(' ') + v.band + QStringLiteral(" kHz ")
        + dateText(v.date) + QLatin1Char(' ') + timeText(v.time) + QStringLiteral(" rsts:") + v.rsts
        + QStringLiteral(" rstr:") + v.rstr + QStringLiteral(" QRB:") + numberText(v.distanceKm)
        + QStringLiteral("km  ") + QStringLiteral("QTF:") + numberText(v.bearing) + QStringLiteral(" QSL: ")
        + v.qsl + QStringLiteral(" Prop:") + v.prop + QLatin1Char(' ') + v.comment;
}

} // namespace ContactSummary
