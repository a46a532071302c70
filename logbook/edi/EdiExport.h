#pragma once
// Writes one band of the log as an EDI file: reads the band's contacts oldest first, turns the
// log's date and time into UTC, scores them (EdiLog) and replaces the file only when it is
// whole. A band without contacts writes no file.
#include "logbook/edi/EdiContest.h"
#include "logbook/entry/LogClock.h"

#include <QDateTime>
#include <QStringList>

class EdiExport {
public:
    enum class Result { Written, Empty, Failed };

    // `bandPattern` is the band button's LIKE pattern ("144%"); `clock` is the clock the log's
    // dates and times were stored in.
    EdiExport(const QString& connection, const QString& bandPattern, LogClock::Base clock);

    Result write(const EdiContest& contest, const QString& path);

    // "48 contacts (12345 points) written to 2m.edi." or why nothing was written.
    const QString& report() const { return report_; }
    // The contacts scored 0 or left out, one sentence each.
    const QStringList& problems() const { return problems_; }

private:
    QString connection_;
    QString bandPattern_;
    LogClock::Base clock_;
    QString report_;
    QStringList problems_;
};
