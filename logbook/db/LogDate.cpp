#include "logbook/db/LogDate.h"

namespace LogDate {

QDate parse(const QString& text)
{
    const QString t = text.trimmed();
    for (const QString& format : { StoredFormat, DisplayFormat, QStringLiteral("d.M.yyyy") }) {
        const QDate d = QDate::fromString(t, format);
        if (d.isValid())
            return d;
    }
    // Two-digit years: 00..69 are 2000..2069, as loggers of the last century wrote them.
    QDate d = QDate::fromString(t, QStringLiteral("d.M.yy"));
    if (d.isValid() && d.year() < 1970)
        d = d.addYears(100);
    return d;
}

QString toStored(const QString& text)
{
    const QDate d = parse(text);
    return d.isValid() ? d.toString(StoredFormat) : text;
}

QString toDisplay(const QString& stored)
{
    const QDate d = parse(stored);
    return d.isValid() ? d.toString(DisplayFormat) : stored;
}

} // namespace LogDate
