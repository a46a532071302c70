#include "logbook/edi/EdiExport.h"

#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "logbook/edi/EdiLog.h"
#include "logbook/entry/LogClock.h"

#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

EdiExport::EdiExport(const QString& connection, const QString& bandPattern, LogClock::Base clock)
    : connection_(connection)
    , bandPattern_(bandPattern)
    , clock_(clock)
{
}

EdiExport::Result EdiExport::write(const EdiContest& contest, const QString& path)
{
    problems_.clear();
    const QString band = EdiLog::bandName(bandPattern_);
    const QString file = QFileInfo(path).fileName();
    if (band.isEmpty()) {
        report_ = QStringLiteral("EDI files are for the bands from 50 MHz up; \"%1\" is not one of them.")
                      .arg(bandPattern_);
        return Result::Failed;
    }
    Recordset rs(connection_);
    rs.setFilter(SqlText::logListFilter(bandPattern_));
    rs.setSort(QStringLiteral("Date asc, GMT asc"));
    if (!rs.open(SqlText::LogList) || rs.recordCount() < 0 || rs.hasError()) {
        report_ = QStringLiteral("The log cannot be read: %1").arg(rs.errorText());
        return Result::Failed;
    }
    const int n = rs.recordCount();
    const auto column = [&rs](const char* name) { return rs.fieldIndex(QLatin1String(name)); };
    const int date = column("Date"), gmt = column("GMT"), call = column("Callsign"), grid = column("Grid"),
              mode = column("mode"), rsts = column("rsts"), rstr = column("rstr"), nrs = column("NrSent"),
              nrr = column("NrRcvd"), dxcc = column("DXCC"), dxccNr = column("DxccNr");
    const auto text
        = [&rs](int row, int field) { return field < 0 ? QString() : rs.valueAt(row, field).toString(); };
    QList<EdiQso> qsos;
    qsos.reserve(n);
    for (int row = 0; row < n; ++row) {
        EdiQso q;
        q.call = text(row, call).trimmed();
        const QDate d = LogClock::date(text(row, date));
        const QTime t = LogClock::time(text(row, gmt));
        if (!d.isValid() || !t.isValid()) {
            problems_ << QStringLiteral("%1: no valid date and time (\"%2 %3\"), left out.")
                             .arg(q.call, text(row, date), text(row, gmt));
            continue;
        }
        q.utc = LogClock::toUtc(d, t, clock_);
        q.mode = text(row, mode);
        q.rstSent = text(row, rsts);
        q.rstRcvd = text(row, rstr);
        q.nrSent = text(row, nrs);
        q.nrRcvd = text(row, nrr);
        q.locator = text(row, grid);
        q.dxcc = text(row, dxccNr);
        if (q.dxcc.isEmpty())
            q.dxcc = text(row, dxcc);
        qsos << q;
    }
    // The order of the file is UTC order; a log on local time sorts the same but for the hour
    // a clock change repeats.
    std::stable_sort(
        qsos.begin(), qsos.end(), [](const EdiQso& a, const EdiQso& b) { return a.utc < b.utc; });
    if (qsos.isEmpty()) {
        report_ = QStringLiteral("No contacts on %1: no file written.").arg(band);
        return Result::Empty;
    }
    const EdiLog log(contest, band, std::move(qsos));
    problems_ << log.problems();
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly) || out.write(log.text(QStringLiteral(KESTREL_VERSION))) < 0
        || !out.commit()) {
        report_ = QStringLiteral("The EDI file cannot be written: %1 (%2)").arg(path, out.errorString());
        return Result::Failed;
    }
    report_ = QStringLiteral("%1 contacts (%2 points) written to %3.")
                  .arg(log.qsos().size())
                  .arg(log.totals().score)
                  .arg(file);
    return Result::Written;
}
