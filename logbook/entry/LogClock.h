#pragma once
// Dates and times of log records read and written without the general date parser, which is
// far too slow for an import of 100 000 contacts: yyyy-MM-dd, dd.MM.yyyy and yyyyMMdd dates,
// H:mm, HH:mm:ss, HHmm and HHmmss times. Other date texts go to LogDate::parse.
// Also the log's clock: the new-contact line fills the local time (the default) or UTC, as
// `[log] clock=local|utc` in Kestrel.ini says; ADIF always speaks UTC.
#include <QDate>
#include <QDateTime>
#include <QString>
#include <QTime>

namespace LogClock {
enum class Base { Local, Utc };
// The clock Kestrel.ini names (key log/clock); Local unless it says "utc".
Base configured();
// The time now on that clock.
QDateTime now(Base base);
// A date and time of the log's clock as UTC, and a UTC date and time on the log's clock.
// A local time that a change to summer time skipped is read as the time after the change;
// in the hour a change to winter time repeats, the earlier of the two is taken.
QDateTime toUtc(QDate date, QTime time, Base base);
// On the local clock by the zone as last read (readZone; QDateTime reads it at each local
// conversion), with its offset from UTC.
QDateTime fromUtc(QDate date, QTime time, Base base);
// Reads the local zone (TZ, /etc/localtime) afresh, as a long run of fromUtc calls starts.
void readZone();

// A date in any of the log's forms; invalid if none.
QDate date(const QString& text);
// "yyyyMMdd" exactly (ADIF); invalid otherwise.
QDate compactDate(const QString& text);
// A time of one of the forms above; `withSeconds` tells whether it gave seconds.
QTime time(const QString& text, bool* withSeconds = nullptr);
// "15.11.2026", "2026-11-15", "20261115".
QString displayDate(QDate d);
QString storedDate(QDate d);
QString compactDateText(QDate d);
// "18:20", "18:20:07", "1820", "182007".
QString hoursMinutes(QTime t);
QString hoursMinutesSeconds(QTime t);
QString compactTime(QTime t, bool withSeconds);
} // namespace LogClock
