#pragma once
// ADIF import and export run to their end on a test log, and a log's rows as comparable text.
#include "EntryTestDb.h"
#include "logbook/adif/AdifExport.h"
#include "logbook/adif/AdifImport.h"

#include <ctime>

template <typename Job> auto finish(Job& job, typename Job::State s)
{
    while (s == Job::State::Running)
        s = job.step(50'000'000);
    return s;
}

// The import's report; the run must end.
inline QString importText(EntryTestDb& db, const QByteArray& data, LogClock::Base clock = LogClock::Base::Utc)
{
    AdifImport import(db.path(), db.locator(), clock);
    EXPECT_EQ(finish(import, import.startData(data, "in.adi")), AdifImport::State::Done)
        << import.error().text().toStdString();
    return import.report();
}

// The records of an export, without the header (its time stamp changes).
inline QByteArray exportText(EntryTestDb& db, const QString& band = QString(), QString* report = nullptr,
    LogClock::Base clock = LogClock::Base::Utc)
{
    AdifExport exporter(db.path(), band, clock);
    EXPECT_EQ(finish(exporter, exporter.start(db.dir.file("out.adi"))), AdifExport::State::Done);
    if (report)
        *report = exporter.report();
    const QByteArray text = db.dir.read("out.adi");
    return text.mid(text.indexOf("<EOH>\n") + 6);
}

// One line "column=value|..." a row, sorted (an export goes oldest first); without columns,
// every column of logtab but the ID.
inline QStringList rowLines(const TestDb& db, QStringList columns = {})
{
    if (columns.isEmpty()) {
        for (const QString& c : tableColumns(db.path(), "logtab"))
            columns << c.section(' ', 0, 0);
        columns.removeAll("ID");
    }
    QStringList out;
    for (const Row& r : db.rows(columns)) {
        QStringList values;
        for (const QString& c : columns)
            values << c + '=' + r[c].toString();
        out << values.join('|');
    }
    out.sort();
    return out;
}

// A log kept on local time in a zone with summer time, while the object lives.
struct BerlinTime {
    BerlinTime()
        : saved(qgetenv("TZ"))
    {
        qputenv("TZ", "Europe/Berlin");
        tzset();
    }
    ~BerlinTime()
    {
        if (saved.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", saved);
        tzset();
    }
    QByteArray saved;
};
