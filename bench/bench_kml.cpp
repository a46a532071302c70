// The map export on a large log: the KML writer's own throughput, and SQNr plus the whole
// GoogleEarth export over 100 000 contacts on 2 000 squares in a real SQLite file.
#include "core/Station.h"
#include "geo/Locator.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/LogbookSchema.h"
#include "logbook/db/Recordset.h"
#include "logbook/db/SqlText.h"
#include "mapexport/KmlFile.h"
#include "mapexport/KmlTemplates.h"
#include "mapexport/KmlWriter.h"
#include "mapexport/LogCount.h"
#include "mapexport/LogMapExport.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/MapViewer.h"
#include "tests/support/TempDir.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QList>

#include <cstdio>

namespace {

constexpr int kContacts = 100000;
constexpr int kSquares = 2000;

// The i-th of kSquares squares spread over Europe and beyond: fields I..P, J..O.
QString squareOf(int i)
{
    const int field = i / 100, square = i % 100;
    return QString(QChar(u'I' + field % 8)) + QChar(u'J' + field / 8) + QChar(u'0' + square / 10)
        + QChar(u'0' + square % 10);
}

QList<LogKmlRow> makeRows()
{
    static const char* props[] = { "Tr", "Rs", "Es", "Au", "Ms", "" };
    QList<LogKmlRow> rows;
    rows.reserve(kContacts);
    for (int i = 0; i < kContacts; ++i) {
        const QString sq = squareOf(i % kSquares);
        LogKmlRow r;
        r.grid = sq + "MM";
        r.geData = QStringLiteral(
            "Log: DL%1ABC 144 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:512km  QTF:87 QSL: Y "
            "Prop:Tr tnx & 73")
                       .arg(i % 10);
        r.gridXY = QStringLiteral("9.58333333333333,48.2916666666667");
        r.poly = i < kSquares ? Kml::squareRing(8, 48, 10, 49) : QString();
        r.qsl = i % 3 ? "Q" : "D";
        r.prop = props[i % 6];
        rows << r;
    }
    return rows;
}

void benchWriter()
{
    TempDir dir;
    RecordingPrompts prompts;
    Station station(prompts);
    station.settings.setText(Setting::MyCall, "N0CALL");
    station.homeCoords = "9.16666666666667,48.9166666666667";
    station.transparency = "128";
    station.documentName = "N0CALL 144 MHz wkd/cfd 2000/1500";
    const QList<LogKmlRow> rows = makeRows();
    for (bool lines : { false, true }) {
        double best = 1e9;
        qint64 bytes = 0;
        for (int rep = 0; rep < 5; ++rep) {
            QElapsedTimer t;
            t.start();
            KmlFile file(Kml::outputPath());
            file.open();
            KmlWriter w(station, file);
            w.begin();
            for (const LogKmlRow& r : rows)
                w.logRecord(r, lines);
            w.end();
            bytes = file.bytesWritten();
            file.commit();
            best = std::min(best, t.nsecsElapsed() / 1e9);
        }
        std::printf("writer, %d records, lines %-3s: %7.1f ms, %6.1f MB, %7.1f MB/s\n", kContacts,
            lines ? "on" : "off", best * 1e3, bytes / 1e6, bytes / 1e6 / best);
    }
}

// 100 000 contacts on 144 MHz over 2 000 squares, entered in time order (squares mixed).
bool makeLog(const QString& path)
{
    DbConnection c(path, DbConnection::DefaultBusyTimeoutMs, true);
    bool ok = c.isOpen();
    for (const QString& sql : LogbookSchema::currentTables())
        ok = ok && c.exec(sql);
    ok = ok && c.exec("PRAGMA journal_mode=WAL") && c.begin();
    static const char* props[] = { "Tr", "Rs", "Es", "Au", "Ms", "" };
    for (int i = 0; ok && i < kContacts; ++i) {
        const QString grid
            = squareOf((i * 7919) % kSquares) + QChar(u'A' + i % 24) + QChar(u'A' + (i / 24) % 24);
        const QString call = QStringLiteral("DL%1ABC").arg(i % 10);
        ok = c.exec("INSERT INTO logtab (Date, GMT, Callsign, Grid, Band, QSL, Prop, GEdata, GEgridXY) "
                    "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
            { "2026-11-15", "18:20", call, grid, "144", i % 3 ? "Q" : "N", props[i % 6],
                "Log: " + call
                    + " 144 kHz  15.11.2026 18:20 rsts:59 rstr:57 QRB:512km  QTF:87 QSL: Q Prop:Tr",
                CoordText(LocatorToDegrees(grid)) });
    }
    return ok && c.commit();
}

double seconds(const QElapsedTimer& t)
{
    return t.nsecsElapsed() / 1e9;
}

void benchExport()
{
    TempDir dir;
    const QString db = dir.file("backup.db");
    QElapsedTimer t;
    t.start();
    if (!makeLog(db)) {
        std::printf("could not build the test log\n");
        return;
    }
    std::printf("log of %d contacts over %d squares built in %.2f s\n", kContacts, kSquares, seconds(t));

    RecordingPrompts prompts;
    Station station(prompts);
    station.dbConnection = db;
    station.settings.setText(Setting::MyCall, "N0CALL");
    station.settings.setText(Setting::MyLocator, "JN48OW");
    station.transparency = "128";
    station.lineStations = true;
    LogMapFields fields;
    QString band = "144%";

    double readSeconds = 0.0;
    {
        t.restart();
        Recordset rs(db);
        rs.setFilter(SqlText::logListFilter(band));
        rs.open(SqlText::LogWithGrid);
        const int n = rs.recordCount();
        readSeconds = seconds(t);
        std::printf("reading the export's recordset (%d records, %d fields): %.3f s\n", n, rs.fieldCount(),
            seconds(t));
    }
    for (int run = 1; run <= 2; ++run) {
        t.restart();
        const LogCount::State s = SQNr(station, fields, band, "");
        const double sqnr = seconds(t);
        std::printf("SQNr run %d (%s outlines): %.3f s (%.2f x one read), Sqw = %s\n", run,
            run == 1 ? "new" : "same", sqnr, sqnr / readSeconds, qPrintable(fields.sqw));
        if (s != LogCount::State::Done)
            std::printf("  SQNr ended early: %s\n", qPrintable(prompts.shown.join(" | ")));
    }
    RecordingMapViewer viewer;
    LogMapExport exporter(station, fields, viewer);
    // Where the time goes: the moment each stage is first reported.
    QString lastStage;
    QStringList stages;
    QElapsedTimer stageClock;
    const auto progress = [&](const QString& stage, qint64, qint64) {
        if (stage != lastStage) {
            if (!lastStage.isEmpty())
                stages << QStringLiteral("%1 %2 s").arg(lastStage).arg(seconds(stageClock), 0, 'f', 3);
            lastStage = stage;
            stageClock.restart();
        }
        return true;
    };
    t.restart();
    stageClock.start();
    const MapExportOutcome out = exporter.GoogleEarth(band, "", progress);
    stages << QStringLiteral("%1 %2 s").arg(lastStage).arg(seconds(stageClock), 0, 'f', 3);
    const double total = seconds(t);
    std::printf("GoogleEarth export end to end (reads, SQNr, SQNQr, writes %lld records): %.3f s (%.2f x one "
                "read), %s\n",
        static_cast<long long>(out.records), total, total / readSeconds, qPrintable(station.documentName));
    std::printf("  stages: %s\n", qPrintable(stages.join(", ")));
    if (out.status != MapExportOutcome::Status::Written)
        std::printf("  export did not write: %s\n", qPrintable(out.message));
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchWriter();
    benchExport();
    return 0;
}
