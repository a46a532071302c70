// EDI export of a contest band: 5 000 contacts on 2 m in a log that also holds 5 000 on other
// bands, written by EdiExport (read, score, write) and by the writer alone. Each figure is the
// median of repeated runs; the export is also given against a reference in the same run: the
// ADIF export of the same band.
#include "bench/BenchSupport.h"
#include "logbook/adif/AdifExport.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/edi/EdiExport.h"
#include "logbook/edi/EdiLog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {


// `perBand` contacts on 144 and as many on 432, over one contest weekend; a few repeat a call.
QList<EdiQso> generate(const QString& path, int perBand)
{
    QRandomGenerator rng(4711);
    QList<EdiQso> qsos;
    DbConnection c(path);
    c.begin();
    QSqlQuery q(c.database());
    q.prepare(QStringLiteral("INSERT INTO logtab (Date, GMT, Callsign, Grid, rsts, rstr, Band, mode, NrSent, "
                             "NrRcvd, DxccNr) VALUES (?,?,?,?,?,?,?,?,?,?,?)"));
    const QDateTime start(QDate(2026, 11, 7), QTime(14, 0), Qt::UTC);
    for (const char* band : { "144", "432" }) {
        for (int i = 0; i < perBand; ++i) {
            EdiQso e;
            e.utc = start.addSecs(qint64(i) * 86400 / perBand);
            e.call = QStringLiteral("DL%1A%2").arg(rng.bounded(10)).arg(rng.bounded(perBand));
            e.locator = randomGrid(rng);
            e.mode = QStringLiteral("SSB");
            e.rstSent = e.rstRcvd = QStringLiteral("59");
            e.nrSent = QString::number(i + 1);
            e.nrRcvd = QString::number(rng.bounded(900) + 1);
            e.dxcc = QString::number(200 + rng.bounded(40));
            for (const QVariant& v : QVariantList { e.utc.date().toString(Qt::ISODate),
                     e.utc.time().toString(QStringLiteral("HH:mm")), e.call, e.locator, e.rstSent, e.rstRcvd,
                     QString::fromLatin1(band), e.mode, e.nrSent, e.nrRcvd, e.dxcc.toInt() })
                q.addBindValue(v);
            if (!q.exec())
                std::printf("generating the log failed\n");
            if (QLatin1String(band) == QLatin1String("144"))
                qsos << e;
        }
    }
    c.commit();
    return qsos;
}

void row(const char* what, double ms, const char* target)
{
    std::printf("  %-58s %9.3f ms   %s\n", what, ms, target);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("backup.db"));
    const int perBand = 5000;
    DbError error;
    if (!DatabaseFile::create(path, &error)) {
        std::printf("cannot create the database: %s\n", qPrintable(error.text()));
        return 1;
    }
    const QList<EdiQso> qsos = generate(path, perBand);
    DatabaseFile::checkpoint(path);
    EdiContest contest;
    contest.call = QStringLiteral("DA0KES");
    contest.locator = QStringLiteral("JN48OW");
    std::printf("EDI export, %d contacts on 144 MHz in a log of %d\n\n", perBand, 2 * perBand);

    QString report;
    const double edi = medianMs(21, [&] {
        EdiExport e(path, QStringLiteral("144%"), LogClock::Base::Utc);
        e.write(contest, dir.filePath(QStringLiteral("2m.edi")));
        report = e.report();
    });
    row("EdiExport: read, score and write the band", edi, "target < 100 ms");
    std::printf("    (%s)\n", qPrintable(report));

    const double reference = medianMs(21, [&] {
        AdifExport a(path, QStringLiteral("144%"));
        if (a.start(dir.filePath(QStringLiteral("2m.adi"))) != AdifExport::State::Failed) {
            while (a.step(1'000'000'000) == AdifExport::State::Running) { }
        }
    });
    row("  reference: ADIF export of the same band", reference, "");
    std::printf("  %-58s %9.2f x\n", "  EDI export against the reference", edi / reference);

    qsizetype bytes = 0;
    const double writer = medianMs(21, [&] {
        const EdiLog log(contest, QStringLiteral("144 MHz"), qsos);
        bytes = log.text(QStringLiteral("0")).size();
    });
    row("EdiLog alone: score and text of the band", writer, "");
    std::printf("    (%lld bytes)\n", static_cast<long long>(bytes));
    return 0;
}
