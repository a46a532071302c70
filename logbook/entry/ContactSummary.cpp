#include "logbook/entry/ContactSummary.h"

#include "logbook/entry/LogClock.h"

#include <QStringBuilder>

#include <cmath>

namespace ContactSummary {

QString dateText(const QString& date)
{
    const QDate d = LogClock::date(date);
    return d.isValid() ? QLatin1Char(' ') + LogClock::displayDate(d) : date;
}

QString timeText(const QString& time)
{
    const QTime t = LogClock::time(time);
    return t.isValid() ? LogClock::hoursMinutes(t) : time;
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
    return text(v, numberText(v.distanceKm), numberText(v.bearing));
}

QString text(const SummaryValues& v, const QString& distanceText, const QString& bearingText)
{
    // One allocation for the whole text (QStringBuilder): the import writes one per contact.
    return QStringLiteral("Log: ") % v.callsign % QLatin1Char(' ') % v.band % QStringLiteral(" kHz ")
        % dateText(v.date) % QLatin1Char(' ') % timeText(v.time) % QStringLiteral(" rsts:") % v.rsts
        % QStringLiteral(" rstr:") % v.rstr % QStringLiteral(" QRB:") % distanceText % QStringLiteral("km  ")
        % QStringLiteral("QTF:") % bearingText % QStringLiteral(" QSL: ") % v.qsl % QStringLiteral(" Prop:")
        % v.prop % QLatin1Char(' ') % v.comment;
}

} // namespace ContactSummary
