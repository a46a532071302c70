// The logbook window on a generated log of 100 000 contacts: the band change (what Label1
// shows), worked-before while a call is typed, scrolling and sorting the grid, saving a
// contact, the map data completion of 10 000 records, and the ADIF export and import of all
// 100 000. Each band-change figure is the median of repeated runs; long actions run through
// the window's slices, as the operator starts them.
#include "core/Station.h"
#include "logbook/adif/AdifExport.h"
#include "logbook/browse/LogGridModel.h"
#include "logbook/browse/WorkedBefore.h"
#include "logbook/db/DatabaseFile.h"
#include "logbook/db/DbConnection.h"
#include "ui/logbook/Form5.h"
#include "ui/widgets/OptionGroup.h"

#include <QApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSqlQuery>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

const char* const Bands[] = { "1840", "3600", "7050", "10140", "14200", "18110", "21150", "24950", "28400",
    "50", "144", "432", "1296", "2320", "34", "5760", "10368", "24048", "47088", "76032", "122250" };
const char* const Prefixes[] = { "DL", "DK", "G", "F", "ON", "PA", "OK", "SP", "HA", "OE", "HB9", "I", "S5",
    "9A", "SM", "OH", "OZ", "EA", "K", "W", "JA", "VK" };
constexpr int Contacts = 100000;
constexpr int CompletionBand = 11; // "432": 10 000 contacts without map data
constexpr int CompletionRecords = 10000;

// 100 000 contacts over 20 years; the 432 MHz band holds 10 000 imported ones (no map texts).
bool generate(const QString& path)
{
    QRandomGenerator rng(4711);
    QVariantList cols[15];
    for (int i = 0; i < Contacts; ++i) {
        const bool imported = i % 10 == 0;
        int b = rng.bounded(20);
        if (b >= CompletionBand)
            ++b;
        const QString band = QString::fromLatin1(Bands[imported ? CompletionBand : b]);
        QString grid;
        grid += QChar(u'I' + rng.bounded(4));
        grid += QChar(u'L' + rng.bounded(4));
        grid += QString::number(rng.bounded(10)) + QString::number(rng.bounded(10));
        grid += QChar(u'A' + rng.bounded(24));
        grid += QChar(u'A' + rng.bounded(24));
        const QString call = QString::fromLatin1(Prefixes[rng.bounded(int(std::size(Prefixes)))])
            + QString::number(rng.bounded(10)) + QChar(u'A' + rng.bounded(26)) + QChar(u'A' + rng.bounded(26))
            + QChar(u'A' + rng.bounded(26));
        const QVariant values[15]
            = { QDate(2006, 1, 1).addDays(qint64(i) * 7300 / Contacts).toString("yyyy-MM-dd"),
                  QStringLiteral("%1:%2:00")
                      .arg(rng.bounded(24), 2, 10, QLatin1Char('0'))
                      .arg(rng.bounded(60), 2, 10, QLatin1Char('0')),
                  call, grid, "59", "57", band, "SSB", "Hans", rng.bounded(3) ? "Y" : "Q", "Tr",
                  double(50 + rng.bounded(2000)), double(rng.bounded(360)), "tnx",
                  imported ? QVariant() : QVariant("Log: ...") };
        for (int c = 0; c < 15; ++c)
            cols[c] << values[c];
    }
    DbConnection c(path);
    if (!c.begin())
        return false;
    QSqlQuery q(c.database());
    q.prepare(
        "INSERT INTO logtab (Date, GMT, Callsign, Grid, rsts, rstr, Band, mode, Nam, QSL, Prop, QRB, QTF, "
        "Comment, GEdata) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
    for (const QVariantList& col : cols)
        q.addBindValue(col);
    return q.execBatch() && c.commit() && !DatabaseFile::checkpoint(path);
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

void row(const char* what, double ms, const char* target = "")
{
    std::printf("  %-60s %10.1f ms   %s\n", what, ms, target);
}

// Worked-before and check partial while typing: each keystroke into the call box until both
// lists under the entry line are filled again, against the same keys in the name box (no list).
void workedBeforeTyping(Form5& form, const QString& path)
{
    QElapsedTimer t;
    t.start();
    WorkedBefore index;
    index.load(path);
    row("worked-before index of 100 000 contacts, read once", t.nsecsElapsed() / 1e6);
    QStringList calls;
    {
        DbConnection c(path);
        QSqlQuery q(c.database());
        q.exec("SELECT Callsign FROM logtab WHERE Band = '144' LIMIT 20");
        while (q.next())
            calls << q.value(0).toString();
    }
    calls << "DL9ZZZ"
          << "OH6ABC"; // not in the log
    auto* ca = form.findChild<QLineEdit*>("Ca");
    auto* na = form.findChild<QLineEdit*>("Na");
    auto* list = form.findChild<QListWidget*>("workedBefore");
    form.findChild<QLineEdit*>("Ba")->setText("144");
    const auto typeInto = [](QLineEdit* box, const QString& call, std::vector<double>& times) {
        box->setFocus();
        box->clear();
        QElapsedTimer k;
        for (QChar ch : call) {
            k.restart();
            QTest::keyClick(box, ch.toLatin1());
            times.push_back(k.nsecsElapsed() / 1e6);
        }
    };
    std::vector<double> withList;
    std::vector<double> plain;
    int shownMost = 0;
    for (int pass = 0; pass < 3; ++pass) {
        for (const QString& call : calls) {
            typeInto(ca, call, withList);
            shownMost = std::max(shownMost, list->count());
            typeInto(na, call, plain);
        }
    }
    ca->clear();
    na->clear();
    char text[160];
    std::snprintf(text, sizeof text,
        "keystroke in the call box until worked-before and check partial show (%zu keys)", withList.size());
    const auto fine = [](const char* what, double ms, const char* target = "") {
        std::printf("  %-60s %10.3f ms   %s\n", what, ms, target);
    };
    fine(text, median(withList), "target < 20 ms");
    fine("  slowest keystroke", *std::max_element(withList.begin(), withList.end()));
    fine("  reference: the same keys in the name box (no list)", median(plain));
    std::printf("    ratio %.1f; longest list %d lines\n", median(withList) / std::max(median(plain), 1e-6),
        shownMost);
}

bool waitIdle(const Form5& form)
{
    return QTest::qWaitFor([&] { return !form.isBusy(); }, 600000);
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QDir::setCurrent(dir.path()); // Kestrel.txt, earth.kml and the ADIF files go here
    const QString path = dir.filePath("backup.db");
    RecordingPrompts prompts;
    Station station(prompts);
    station.dbConnection = path;
    station.settings.setText(Setting::MyCall, "N0CALL");
    station.settings.setText(Setting::MyLocator, "JN48OW");
    station.settings.setInt16(Setting::LogbookNumber, 10);

    std::printf(
        "Logbook window form5 on %d generated contacts over 21 bands (SQLite, WAL, offscreen)\n\n", Contacts);
    QElapsedTimer t;
    t.start();
    if (!DatabaseFile::create(path) || !generate(path)) {
        std::printf("cannot make the log\n");
        return 1;
    }
    row("making the log (one transaction)", t.nsecsElapsed() / 1e6);
    t.restart();
    Form5 form(station);
    form.resize(1180, 720);
    form.show();
    if (!QTest::qWaitForWindowExposed(&form))
        std::printf("the window was not shown\n");
    row("opening the window (band 144 MHz, prefix conversion, list twice)", t.nsecsElapsed() / 1e6);
    std::printf("\n");
    workedBeforeTyping(form, path);
    std::printf("\n");

    // Band change: what Label1 shows (whole milliseconds) and the same, timed finer.
    auto* label1 = form.findChild<QLabel*>("Label1");
    std::vector<double> change;
    std::vector<double> shown;
    int rows = 0;
    for (int pass = 0; pass < 3; ++pass) {
        for (int b = 0; b < 21; ++b) {
            t.restart();
            form.findChild<QRadioButton*>(QStringLiteral("OptBand%1").arg(b))->click();
            change.push_back(t.nsecsElapsed() / 1e6);
            shown.push_back(label1->text().chopped(3).toDouble());
            rows = std::max(rows, form.gridModel()->rowCount());
            form.findChild<QTableView*>("DataGrid1")->viewport()->repaint(); // the new page painted
        }
    }
    char text[160];
    std::snprintf(text, sizeof text, "band change, median of 63 (up to %d rows), Label1 shows", rows);
    row(text, median(shown), "target < 50 ms");
    row("  the same, measured around the click", median(change));
    row("  slowest band change", *std::max_element(change.begin(), change.end()));
    std::vector<double> all;
    for (int i = 0; i < 5; ++i) {
        form.findChild<QRadioButton*>("OptBand10")->click();
        t.restart();
        form.findChild<QRadioButton*>("OptBand21")->click();
        all.push_back(t.nsecsElapsed() / 1e6);
    }
    std::snprintf(text, sizeof text, "change to all bands (%d rows)", form.gridModel()->rowCount());
    row(text, median(all));

    // Scrolling and sorting all 100 000.
    auto* grid = form.findChild<QTableView*>("DataGrid1");
    t.restart();
    for (int i = 0; i < 50; ++i) {
        grid->verticalScrollBar()->setValue(grid->verticalScrollBar()->maximum() * i / 49);
        grid->viewport()->repaint();
    }
    row("scroll and paint a page, mean of 50 jumps over 100 000 rows", t.nsecsElapsed() / 1e6 / 50);
    const int call = form.gridModel()->recordset().fieldIndex("Callsign");
    t.restart();
    grid->horizontalHeader()->setSortIndicator(call, Qt::AscendingOrder);
    row("sort 100 000 rows by callsign (header click)", t.nsecsElapsed() / 1e6);

    // Saving one contact on 144 MHz: save, SQNr over the band, list reload.
    form.findChild<QRadioButton*>("OptBand10")->click();
    std::vector<double> saves;
    for (int i = 0; i < 5; ++i) {
        form.findChild<QLineEdit*>("Ca")->setText(QStringLiteral("DL%1XYZ").arg(i));
        form.findChild<QLineEdit*>("Gr")->setText("JO62QM");
        form.locatorCheck();
        t.restart();
        form.Save_Click();
        waitIdle(form);
        saves.push_back(t.nsecsElapsed() / 1e6);
    }
    row("save a contact on 144 MHz (with SQNr and list reload)", median(saves));
    form.findChild<QRadioButton*>("OptBand21")->click();
    form.findChild<QLineEdit*>("Ca")->setText("DL9XYZ");
    t.restart();
    form.Save_Click();
    row("save a contact on all bands: the write, until the window takes input", t.nsecsElapsed() / 1e6);
    waitIdle(form);
    row("  the same until SQNr over 100 000 and the list reload are done", t.nsecsElapsed() / 1e6);
    form.findChild<OptionGroup*>("uSc_MultiOption1")->setValue(2);
    t.restart();
    form.Search_Click();
    waitIdle(form);
    row("empty search on all bands: SQNr and SQNQr in slices", t.nsecsElapsed() / 1e6);
    std::printf("\n");

    // Map data completion of the 10 000 imported 432 MHz records, through the window.
    form.findChild<QRadioButton*>(QStringLiteral("OptBand%1").arg(CompletionBand))->click();
    prompts.shown.clear();
    t.restart();
    form.gridDEC_Click();
    waitIdle(form);
    const double completion = t.nsecsElapsed() / 1e6;
    std::snprintf(text, sizeof text, "map data completion of %d records (with SQNr)", CompletionRecords);
    row(text, completion, "target < 5000 ms");
    std::printf("    message: \"%s\"\n", qPrintable(prompts.shown.value(0)));

    // ADIF export of all, then import into an empty log.
    t.restart();
    form.exportAdif(dir.filePath("all.adi"), true);
    waitIdle(form);
    row("ADIF export of all contacts", t.nsecsElapsed() / 1e6);
    std::printf("    message: \"%s\"\n", qPrintable(prompts.shown.value(1)));
    form.close();

    const QString emptyPath = dir.filePath("empty.db");
    DatabaseFile::create(emptyPath);
    RecordingPrompts prompts2;
    Station fresh(prompts2);
    fresh.dbConnection = emptyPath;
    fresh.settings.setText(Setting::MyLocator, "JN48OW");
    fresh.settings.setInt16(Setting::LogbookNumber, 10);
    Form5 second(fresh);
    second.show();
    t.restart();
    second.importAdif(dir.filePath("all.adi"));
    waitIdle(second);
    std::snprintf(text, sizeof text, "ADIF import of %d records into an empty log (%.0f MB)", Contacts + 5,
        QFileInfo(dir.filePath("all.adi")).size() / 1e6);
    row(text, t.nsecsElapsed() / 1e6, "target < 10000 ms");
    std::printf("    message: \"%s\"\n", qPrintable(prompts2.shown.value(0).section('\n', 0, 1)));
    second.close();
    return 0;
}
