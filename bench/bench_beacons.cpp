// The beacon list over 10 000 beacons in a real SQLite file: the list load with search and
// sort (library and whole panel), and the two map buttons GD and GE one after the other.
#include "beacons/BeaconList.h"
#include "beacons/BeaconMapData.h"
#include "beacons/BeaconMapExport.h"
#include "core/Station.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "logbook/db/RecordsetModel.h"
#include "mapexport/MapViewer.h"
#include "tests/support/TempDir.h"
#include "ui/beacons/BeaconPanel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlQuery>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr int kBeacons = 10000;
constexpr int kRuns = 15;

const char* const kPrefixes[] = { "DB0", "DL0", "OK1", "OZ7", "GB3", "PI7", "F5Z", "HB9", "OE3", "SK4" };
const char* const kBands[] = { "50", "144", "432", "1296", "2320", "3400", "5760", "10368", "24048", "70" };

bool fill(const QString& path)
{
    if (!DatabaseFile::create(path))
        return false;
    DbConnection c(path);
    if (!c.exec(QStringLiteral("DELETE FROM PNT_Beacon")) || !c.begin())
        return false;
    for (int i = 0; i < kBeacons; ++i) {
        const QString name = QString::fromLatin1(kPrefixes[i % 10]) + QChar(u'A' + (i / 10) % 26)
            + QChar(u'A' + (i / 260) % 26) + (i % 3 ? QStringLiteral("/B") : QString());
        const QString locator = QString(QChar(u'I' + i % 8)) + QChar(u'J' + (i / 8) % 6)
            + QString::number(i % 10) + QString::number((i / 10) % 10) + QChar(u'A' + i % 24)
            + QChar(u'A' + (i / 24) % 24);
        const QString qrg = QString::fromLatin1(kBands[i % 10]) + QString::number(100 + i % 900);
        if (!c.exec(QStringLiteral(
                        "INSERT INTO PNT_Beacon (beacon, Locator, qrg, Equipment) VALUES (?, ?, ?, ?)"),
                { name, locator, qrg, QStringLiteral("ERP 10 W, omni & horizontal") }))
            return false;
    }
    return c.commit();
}

struct Figures {
    double median;
    double best;
};

Figures timeMs(const std::function<void()>& run)
{
    std::vector<double> ms;
    for (int i = 0; i < kRuns; ++i) {
        QElapsedTimer t;
        t.start();
        run();
        ms.push_back(t.nsecsElapsed() / 1e6);
    }
    std::sort(ms.begin(), ms.end());
    return { ms[ms.size() / 2], ms.front() };
}

void print(const char* what, int rows, const Figures& f)
{
    std::printf("%-58s %5d rows: median %7.2f ms, best %7.2f ms\n", what, rows, f.median, f.best);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    TempDir dir;
    RecordingPrompts prompts;
    Station station(prompts);
    station.dbConnection = dir.file(QStringLiteral("backup.db"));
    station.settings.setText(Setting::MyCall, QStringLiteral("N0CALL"));
    station.settings.setText(Setting::MyLocator, QStringLiteral("JN48TH"));
    station.homeCoords = QStringLiteral("9.58333333333333,48.2916666666667");
    station.transparency = QStringLiteral("128");
    station.lineBeacons = true;
    if (!fill(station.dbConnection)) {
        std::printf("could not build the beacon table\n");
        return 1;
    }
    std::printf("beacon table of %d beacons in %s\n", kBeacons, qPrintable(station.dbConnection));

    int rows = 0;
    auto load = [&](const QString& search, bool byQrg, const QString& filter) {
        return [&, search, byQrg, filter] {
            BeaconList::Loaded l = BeaconList::load(station.dbConnection, search, byQrg, filter);
            rows = l.rs.recordCount();
        };
    };
    // Reference: the same sorted rows read by a bare query, every field touched once.
    const Figures plain = timeMs([&] {
        DbConnection c(station.dbConnection);
        QSqlQuery q(c.database());
        q.setForwardOnly(true);
        q.exec(QStringLiteral("SELECT beacon, Locator, qrg, Equipment FROM PNT_beacon ORDER BY qrg"));
        rows = 0;
        while (q.next()) {
            for (int i = 0; i < 4; ++i)
                (void)q.value(i);
            ++rows;
        }
    });
    print("reference: bare sorted query of the same rows", rows, plain);
    Figures f = timeMs(load(QString(), true, QString()));
    print("list load, no search, sorted by qrg (schema check incl.)", rows, f);
    std::printf("  = %.2f x the bare query\n", f.median / plain.median);
    f = timeMs(load(QStringLiteral("D"), true, QString()));
    print("list load, search \"D\", sorted by qrg", rows, f);
    f = timeMs(load(QStringLiteral("%/B"), false, QString()));
    print("list load, search \"%/B\", sorted by name", rows, f);
    f = timeMs(load(QStringLiteral("O"), true, QStringLiteral("%/b%")));
    print("list load, search \"O\", beacons only, sorted by qrg", rows, f);

    RecordingMapViewer viewer;
    BeaconPanel panel(station, &viewer);
    panel.resize(800, 500);
    panel.show();
    panel.findChild<QLineEdit*>(QStringLiteral("BeSearch"))->setText(QStringLiteral("D"));
    panel.findChild<QPushButton*>(QStringLiteral("BanCoun"))->setChecked(true);
    f = timeMs([&] {
        panel.LoadBeaconList();
        QApplication::processEvents(); // the grid's repaint of the new rows
    });
    print("panel LoadBeaconList, search \"D\", by qrg, with repaint", panel.model().rowCount(), f);
    panel.findChild<QLineEdit*>(QStringLiteral("BeSearch"))->clear();
    f = timeMs([&] {
        panel.LoadBeaconList();
        QApplication::processEvents();
    });
    print("panel LoadBeaconList, no search, by qrg, with repaint", panel.model().rowCount(), f);

    prompts.shown.clear();
    QElapsedTimer t;
    t.start();
    const GdOutcome gd = GD(station, QString());
    const double gdMs = t.nsecsElapsed() / 1e6;
    t.restart();
    const BeaconExportOutcome ge = GeB_Click(station, QString(), viewer);
    const double geMs = t.nsecsElapsed() / 1e6;
    std::printf("GD over %d records: %.1f ms (%s)\n", gd.records, gdMs, qPrintable(gd.message));
    std::printf("GE over %d records, lines on: %.1f ms, earth.kml %lld bytes\n", ge.records, geMs,
        static_cast<long long>(QFileInfo(dir.file(QStringLiteral("earth.kml"))).size()));
    std::printf("GD plus GE: %.1f ms\n", gdMs + geMs);
    if (!gd.ok || ge.status != BeaconExportOutcome::Status::Written)
        std::printf("  a map step failed: %s\n", qPrintable(prompts.shown.join(QStringLiteral(" | "))));
    return 0;
}
