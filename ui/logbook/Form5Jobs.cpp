// The long actions of the logbook window: map data completion, GoogleEarth export, ADIF import
// and export. Each runs in slices with a progress dialog that can cancel it.
#include "core/Station.h"
#include "logbook/adif/AdifExport.h"
#include "logbook/adif/AdifImport.h"
#include "logbook/completion/MapDataCompletion.h"
#include "logbook/entry/LogClock.h"
#include "logbook/edi/EdiExport.h"
#include "mapexport/ImportLocator.h"
#include "mapexport/LogCount.h"
#include "mapexport/LogMapExport.h"
#include "mapexport/RichtungQrb.h"
#include "mapexport/MapViewer.h"
#include "mapexport/SquareMap.h"
#include "ui/logbook/Form5.h"
#include "ui/logbook/SlicedJob.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSaveFile>

namespace {
constexpr qint64 kSliceNs = 30'000'000;
constexpr int kReportLines = 30;
} // namespace

void Form5::runJob(SlicedJob* job)
{
    job_ = job;
    connect(job, &SlicedJob::finished, job, &QObject::deleteLater);
    job->start();
}

void Form5::runCounts(const QList<int>& kinds, std::function<void()> after)
{
    if (countsJob_)
        countsJob_->abandon();
    struct Run {
        QList<int> kinds;
        std::unique_ptr<LogCount> count;
    };
    auto run = std::make_shared<Run>();
    run->kinds = kinds;
    const QString pattern = station_.bandPattern;
    const QString search = ui_.txtStr->text();
    SlicedJob::Steps steps;
    steps.label = QStringLiteral("Counting ...");
    steps.step = [this, run, pattern, search] {
        for (;;) {
            if (!run->count) {
                if (run->kinds.isEmpty())
                    return false;
                run->count = std::make_unique<LogCount>(
                    station_, fields_, LogCount::Kind(run->kinds.takeFirst()), pattern, search);
                run->count->start();
            }
            if (run->count->state() == LogCount::State::Running
                && run->count->step(kSliceNs) == LogCount::State::Running)
                return true;
            if (run->count->state() == LogCount::State::Failed) // its message is shown
                return false;
            run->count.reset();
        }
    };
    steps.cancel = [run] {
        if (run->count)
            run->count->cancel();
        run->kinds.clear();
    };
    steps.progress = [run]() -> std::pair<qint64, qint64> {
        return run->count ? std::pair { run->count->done(), run->count->total() }
                          : std::pair<qint64, qint64> {};
    };
    auto* job = new SlicedJob(this, nullptr, steps);
    countsJob_ = job;
    connect(job, &SlicedJob::finished, job, &QObject::deleteLater);
    connect(job, &SlicedJob::finished, this, [this, after](bool) {
        showCounts();
        if (after)
            after();
    });
    job->start();
}

// The completion's locator procedure: RichtungQRB on the window's own fields, as the record's
// locator would run in the locator box; the record's QRB and QTF come in as the stored values.
LocatorProcedure Form5::completionLocator()
{
    return [this](const QString& grid, MapPosition& p) {
        fields_.distanceKm = p.distanceKm;
        fields_.bearing = p.bearing;
        const bool ok = RichtungQRB(station_, fields_, grid);
        p = { station_.coordText, fields_.distanceKm, fields_.bearing };
        return ok;
    };
}

// The import's locator procedure: RichtungQRB's stored values, leaving the window's fields alone.
LocatorProcedure Form5::importLocator()
{
    return ImportLocator(station_.settings.textAt(Setting::MyLocator));
}

void Form5::gridDEC_Click()
{
    if (isBusy())
        return;
    struct Run {
        std::unique_ptr<MapDataCompletion> completion;
        std::unique_ptr<LogCount> count;
    };
    auto run = std::make_shared<Run>();
    run->completion = std::make_unique<MapDataCompletion>(
        station_.dbConnection, station_.bandPattern, completionLocator(), storedPosition());
    if (run->completion->start() == MapDataCompletion::State::Failed) {
        station_.prompts.information(MapDataCompletion::Failure);
        return;
    }
    SlicedJob::Steps steps;
    steps.label = QStringLiteral("Completing the map data of the log ...");
    steps.step = [this, run] {
        if (!run->count) {
            if (run->completion->step(kSliceNs) == MapDataCompletion::State::Running)
                return true;
            if (run->completion->state() != MapDataCompletion::State::Done)
                return false;
            run->count = std::make_unique<LogCount>(
                station_, fields_, LogCount::Kind::SQNr, station_.bandPattern, ui_.txtStr->text());
            return run->count->start() == LogCount::State::Running;
        }
        return run->count->step(kSliceNs) == LogCount::State::Running;
    };
    steps.cancel = [run] {
        run->completion->cancel();
        if (run->count)
            run->count->cancel();
    };
    steps.progress = [run]() -> std::pair<qint64, qint64> {
        if (run->count)
            return { run->count->done(), run->count->total() };
        return { run->completion->done(), run->completion->total() };
    };
    auto* job = new SlicedJob(this, ui_.content, steps);
    connect(job, &SlicedJob::finished, this, [this, run](bool cancelled) {
        const MapPosition p = run->completion->position();
        station_.coordText = p.coordText;
        fields_.distanceKm = p.distanceKm;
        fields_.bearing = p.bearing;
        if (run->completion->completed() > 0)
            ui_.Gr->clear(); // each completed record went through Gr; none: Gr keeps what was typed
        showCounts();
        const bool countFailed = run->count && run->count->state() == LogCount::State::Failed;
        if (run->completion->state() == MapDataCompletion::State::Failed)
            station_.prompts.information(MapDataCompletion::Failure);
        else if (!cancelled && !countFailed)
            station_.prompts.information(MapDataCompletion::message(run->completion->total()));
        loadLogList(QStringLiteral("gridDEC_Click"));
    });
    runJob(job);
}

void Form5::GoogleEarth_Click()
{
    if (isBusy() || !mapExport_->start(station_.bandPattern, ui_.txtStr->text()))
        return;
    ui_.content->setEnabled(false);
    auto* dialog
        = new QProgressDialog(QStringLiteral("Writing the map ..."), QStringLiteral("Cancel"), 0, 1000, this);
    dialog->setObjectName(QStringLiteral("progress"));
    dialog->setWindowModality(Qt::NonModal);
    dialog->setMinimumDuration(SlicedJob::ShowAfterMs);
    dialog->setAutoClose(false);
    dialog->setAutoReset(false);
    dialog->setValue(0);
    connect(dialog, &QProgressDialog::canceled, mapExport_, &LogMapExport::cancel);
    connect(mapExport_, &LogMapExport::progress, dialog,
        [dialog](const QString& stage, qint64 done, qint64 total) {
            dialog->setLabelText(stage);
            dialog->setValue(total > 0 ? int(std::min<qint64>(1000, done * 1000 / total)) : 0);
        });
    connect(mapExport_, &LogMapExport::finished, dialog, [this, dialog](const MapExportOutcome&) {
        dialog->hide();
        dialog->deleteLater();
        ui_.content->setEnabled(true);
        showCounts();
    });
}

void Form5::chooseImportFile()
{
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("ADIF import"),
        QDir::currentPath(), QStringLiteral("ADIF files (*.adi *.adif);;All files (*)"));
    if (!path.isEmpty())
        importAdif(path);
}

void Form5::chooseExportFile()
{
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("ADIF export"),
        QDir::current().filePath(QStringLiteral("kestrel.adi")), QStringLiteral("ADIF files (*.adi)"));
    if (!path.isEmpty())
        exportAdif(path, ui_.adifAllBands->isChecked());
}

void Form5::importAdif(const QString& path)
{
    if (isBusy())
        return;
    auto import
        = std::make_shared<AdifImport>(station_.dbConnection, importLocator(), LogClock::configured());
    if (import->start(path) == AdifImport::State::Failed) {
        station_.prompts.information(import->error().description);
        return;
    }
    SlicedJob::Steps steps;
    steps.label = QStringLiteral("Importing %1 ...").arg(QFileInfo(path).fileName());
    steps.step = [import] { return import->step(kSliceNs) == AdifImport::State::Running; };
    steps.cancel = [import] { import->cancel(); };
    steps.progress = [import]() -> std::pair<qint64, qint64> { return { import->done(), import->total() }; };
    auto* job = new SlicedJob(this, ui_.content, steps);
    connect(job, &SlicedJob::finished, this, [this, import, path](bool) {
        QString text = import->report(kReportLines);
        if (import->state() == AdifImport::State::Failed)
            text += QStringLiteral("\nThe import stopped: ") + import->error().text();
        if (import->refusals().size() + import->keptAsText().size() > kReportLines) {
            // The whole list beside the file, for working through it.
            QSaveFile list(path + QStringLiteral(".refused.txt"));
            if (list.open(QIODevice::WriteOnly)) {
                list.write(import->refusalList().toUtf8() + '\n');
                if (list.commit())
                    text += QStringLiteral("\nAll refused records are listed in ") + list.fileName();
            }
        }
        loadLogList(QStringLiteral("adifImport_Click"));
        station_.prompts.information(text);
    });
    runJob(job);
}

void Form5::exportAdif(const QString& path, bool allBands)
{
    if (isBusy())
        return;
    auto exporter = std::make_shared<AdifExport>(
        station_.dbConnection, allBands ? QString() : station_.bandPattern, LogClock::configured());
    if (exporter->start(path) == AdifExport::State::Failed) {
        station_.prompts.information(exporter->error().description);
        return;
    }
    SlicedJob::Steps steps;
    steps.label = QStringLiteral("Writing %1 ...").arg(QFileInfo(path).fileName());
    steps.step = [exporter] { return exporter->step(kSliceNs) == AdifExport::State::Running; };
    steps.cancel = [exporter] { exporter->cancel(); };
    steps.progress = [exporter]() -> std::pair<qint64, qint64> {
        return { exporter->done(), exporter->total() };
    };
    auto* job = new SlicedJob(this, ui_.content, steps);
    connect(job, &SlicedJob::finished, this, [this, exporter](bool cancelled) {
        if (exporter->state() == AdifExport::State::Failed)
            station_.prompts.information(exporter->error().description);
        else if (!cancelled)
            station_.prompts.information(exporter->report());
    });
    runJob(job);
}

void Form5::chooseEdiFile()
{
    const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("EDI export"),
        QDir::current().filePath(QStringLiteral("contest.edi")), QStringLiteral("EDI files (*.edi)"));
    if (!path.isEmpty())
        exportEdi(path);
}

void Form5::exportEdi(const QString& path)
{
    if (isBusy())
        return;
    EdiExport exporter(station_.dbConnection, station_.bandPattern, LogClock::configured());
    exporter.write(EdiContest::fromSettings(station_.settings), path);
    QStringList lines = exporter.problems().mid(0, kReportLines);
    if (exporter.problems().size() > kReportLines)
        lines << QStringLiteral("... and %1 more.").arg(exporter.problems().size() - kReportLines);
    lines.prepend(exporter.report());
    station_.prompts.information(lines.join(QLatin1Char('\n')));
}

void Form5::squareMap_Click()
{
    if (isBusy())
        return;
    const QString path = QDir::current().filePath(QStringLiteral("squares.kml"));
    SquareTally tally;
    QString report;
    const bool written = SquareMap::write(station_.dbConnection, station_.bandPattern, path,
        station_.myCall + QStringLiteral(" squares"), &tally, &report);
    station_.prompts.information(report);
    if (written)
        viewer_->open(path);
}
