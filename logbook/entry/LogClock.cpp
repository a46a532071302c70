#include "logbook/entry/LogClock.h"

#include "core/ExtensionSettings.h"
#include "logbook/db/LogDate.h"

#include <algorithm>
#include <ctime>

namespace {

// The number of `count` digits from `at`; -1 when one is no digit.
int digits(const QString& s, qsizetype at, int count)
{
    int v = 0;
    for (int i = 0; i < count; ++i) {
        const QChar c = s[at + i];
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return -1;
        v = v * 10 + (c.unicode() - u'0');
    }
    return v;
}

// The texts below are written in place into a string of their length: the import writes
// several a contact.
void two(QChar*& out, int v)
{
    *out++ = QChar(u'0' + v / 10);
    *out++ = QChar(u'0' + v % 10);
}

void four(QChar*& out, int v)
{
    two(out, v / 100);
    two(out, v % 100);
}

QDate fromParts(int y, int m, int d)
{
    return y < 0 || m < 0 || d < 0 ? QDate() : QDate(y, m, d);
}

} // namespace

namespace LogClock {

Base configured()
{
    return ExtensionSettings::value(ExtensionKey::LogClock)
                .trimmed()
                .compare(QLatin1String("utc"), Qt::CaseInsensitive)
            == 0
        ? Base::Utc
        : Base::Local;
}

QDateTime now(Base base)
{
    return base == Base::Utc ? QDateTime::currentDateTimeUtc() : QDateTime::currentDateTime();
}

QDateTime toUtc(QDate date, QTime time, Base base)
{
    const QDateTime asUtc(date, time, Qt::UTC);
    if (base == Base::Utc)
        return asUtc;
    // The C library's answer for a repeated or skipped local time depends on its last call, so
    // the offsets a day before and after decide: a time both give is repeated (the earlier
    // wins), a time neither gives was skipped (read with the offset before the change).
    const qint64 local = asUtc.toMSecsSinceEpoch();
    auto offsetAt = [](qint64 utcMs) {
        return qint64(QDateTime::fromMSecsSinceEpoch(utcMs, Qt::LocalTime).offsetFromUtc()) * 1000;
    };
    const qint64 day = 86'400'000;
    const qint64 before = local - offsetAt(local - day);
    const qint64 after = local - offsetAt(local + day);
    const bool beforeFits = before + offsetAt(before) == local;
    const bool afterFits = after + offsetAt(after) == local;
    const qint64 utc = beforeFits && afterFits ? std::min(before, after) : afterFits ? after : before;
    return QDateTime::fromMSecsSinceEpoch(utc, Qt::UTC);
}

QDateTime fromUtc(QDate date, QTime time, Base base)
{
    const QDateTime utc(date, time, Qt::UTC);
    if (base == Base::Utc)
        return utc;
    // The C library's conversion, as QDateTime's, but without its re-reading of the zone (a
    // file-system call) at every call: an import converts every contact.
    const std::time_t seconds = std::time_t(utc.toSecsSinceEpoch());
    std::tm local {};
    if (!localtime_r(&seconds, &local))
        return utc.toLocalTime();
    return QDateTime::fromMSecsSinceEpoch(utc.toMSecsSinceEpoch(), Qt::OffsetFromUTC, int(local.tm_gmtoff));
}

void readZone()
{
    tzset();
}

QDate compactDate(const QString& t)
{
    return t.size() == 8 ? fromParts(digits(t, 0, 4), digits(t, 4, 2), digits(t, 6, 2)) : QDate();
}

QDate date(const QString& text)
{
    const QString& t = text;
    if (t.size() == 10 && t[4] == QLatin1Char('-') && t[7] == QLatin1Char('-'))
        return fromParts(digits(t, 0, 4), digits(t, 5, 2), digits(t, 8, 2));
    if (t.size() == 10 && t[2] == QLatin1Char('.') && t[5] == QLatin1Char('.'))
        return fromParts(digits(t, 6, 4), digits(t, 3, 2), digits(t, 0, 2));
    return LogDate::parse(text);
}

QTime time(const QString& text, bool* withSeconds)
{
    const QString t = text.trimmed();
    int h = -1, m = -1, s = 0;
    bool seconds = false;
    const qsizetype colon = t.indexOf(QLatin1Char(':'));
    if (colon == 1 || colon == 2) {
        h = digits(t, 0, int(colon));
        const qsizetype rest = t.size() - colon - 1;
        if (rest == 2) {
            m = digits(t, colon + 1, 2);
        } else if (rest == 5 && t[colon + 3] == QLatin1Char(':')) {
            m = digits(t, colon + 1, 2);
            s = digits(t, colon + 4, 2);
            seconds = true;
        }
    } else if (colon < 0 && (t.size() == 4 || t.size() == 6)) {
        h = digits(t, 0, 2);
        m = digits(t, 2, 2);
        if (t.size() == 6) {
            s = digits(t, 4, 2);
            seconds = true;
        }
    }
    if (h < 0 || m < 0 || s < 0 || !QTime::isValid(h, m, s))
        return QTime();
    if (withSeconds)
        *withSeconds = seconds;
    return QTime(h, m, s);
}

// The date's three numbers, day first or year first, with a separator or none.
QString dateText(QDate d, bool dayFirst, QChar separator)
{
    int year = 0, month = 0, day = 0;
    d.getDate(&year, &month, &day);
    QString out(separator.isNull() ? 8 : 10, Qt::Uninitialized);
    QChar* at = out.data();
    auto separate = [&] {
        if (!separator.isNull())
            *at++ = separator;
    };
    if (dayFirst) {
        two(at, day);
        separate();
        two(at, month);
        separate();
        four(at, year);
    } else {
        four(at, year);
        separate();
        two(at, month);
        separate();
        two(at, day);
    }
    return out;
}

QString displayDate(QDate d)
{
    return dateText(d, true, QLatin1Char('.'));
}

QString storedDate(QDate d)
{
    return dateText(d, false, QLatin1Char('-'));
}

QString compactDateText(QDate d)
{
    return dateText(d, false, QChar());
}

QString hoursMinutes(QTime t)
{
    QString out(5, Qt::Uninitialized);
    QChar* at = out.data();
    two(at, t.hour());
    *at++ = QLatin1Char(':');
    two(at, t.minute());
    return out;
}

QString hoursMinutesSeconds(QTime t)
{
    QString out(8, Qt::Uninitialized);
    QChar* at = out.data();
    two(at, t.hour());
    *at++ = QLatin1Char(':');
    two(at, t.minute());
    *at++ = QLatin1Char(':');
    two(at, t.second());
    return out;
}

QString compactTime(QTime t, bool withSeconds)
{
    QString out(withSeconds ? 6 : 4, Qt::Uninitialized);
    QChar* at = out.data();
    two(at, t.hour());
    two(at, t.minute());
    if (withSeconds)
        two(at, t.second());
    return out;
}

} // namespace LogClock
