#include "qsl/QslText.h"

#include "logbook/db/LogDate.h"
#include "logbook/entry/ContactSummary.h"

#include <QLocale>
#include <QTime>

#include <cmath>

namespace QslText {

QString greeting(const QString& letter)
{
    return letter == LetterThanks ? Thanks : Please;
}

QString confirmation(const QString& letter)
{
    return letter == LetterBeacon ? ConfirmBeacon : ConfirmQso;
}

QString closing(const QString& letter)
{
    return letter == LetterBeacon ? ClosingBeacon : ClosingQso;
}

QString nextStatus(const QString& qsl)
{
    const QString upper = qsl.trimmed().toUpper();
    if (upper == QLatin1String("T"))
        return QStringLiteral("Q");
    if (upper == QLatin1String("S"))
        return QStringLiteral("D");
    if (upper == QLatin1String("Y") || upper == QLatin1String("B"))
        return QStringLiteral("N");
    return qsl;
}

QString formatBand(const QString& band)
{
    bool ok = false;
    const double value = QLocale::c().toDouble(band.trimmed(), &ok);
    if (!ok || !std::isfinite(value) || std::fabs(value) > 1e15)
        return band;
    const long long whole = std::llround(value);
    QString digits = QString::number(whole < 0 ? -whole : whole);
    if (whole == 0)
        digits.clear(); // deliberate: "#" placeholders print nothing for zero
    for (int at = digits.size() - 3; at > 0; at -= 3)
        digits.insert(at, QLatin1Char(','));
    return QStringLiteral("    ") + (whole < 0 ? QStringLiteral("-") : QString()) + digits;
}

QString formatDate(const QString& date)
{
    const QDate d = LogDate::parse(date);
    return d.isValid() ? d.toString(QStringLiteral(" dd.MM.yyyy")) : date;
}

QString formatTime(const QString& time)
{
    const QString t = time.trimmed();
    for (const char* form : { "HH:mm:ss", "H:mm:ss", "HH:mm", "H:mm", "HHmm", "HHmmss" }) {
        const QTime parsed = QTime::fromString(t, QLatin1String(form));
        if (parsed.isValid())
            return parsed.toString(QStringLiteral("  HH:mm "));
    }
    return time;
}

QString formatNumber(const QVariant& value)
{
    if (!value.isValid() || value.isNull() || value.toString().trimmed().isEmpty())
        return QString();
    bool ok = false;
    const double v = value.toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return value.toString();
    return ContactSummary::numberText(static_cast<float>(v));
}

QString ownLocatorLine(const QString& locator)
{
    const QString loc = locator.trimmed();
    if (loc.isEmpty())
        return QString();
    QString shown = loc.toUpper();
    if (loc.size() == 8 || loc.size() == 10)
        shown = shown.left(6) + shown.mid(6).toLower();
    return QStringLiteral("Loc: ") + shown;
}

QString managerLine(const QString& manager)
{
    const QString m = manager.trimmed();
    return m.isEmpty() ? QString() : QStringLiteral("via ") + m.toUpper();
}

} // namespace QslText
