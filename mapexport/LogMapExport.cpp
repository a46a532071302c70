#include "mapexport/LogMapExport.h"

#include "core/FilePlace.h"
#include "core/Station.h"
#include "logbook/db/SqlText.h"
#include "mapexport/KmlFile.h"
#include "mapexport/KmlTemplates.h"
#include "mapexport/KmlWriter.h"
#include "mapexport/LogMapFields.h"
#include "mapexport/MapExportLog.h"
#include "mapexport/MapViewer.h"

#include <QElapsedTimer>
#include <QTimer>

namespace {

// One slice of work keeps the window answering: about this long, then back to the event loop.
constexpr qint64 kSliceNs = 25'000'000;
constexpr int kBatch = 256;

const QString kNoCoords = QStringLiteral("No lat/long coords where found.");
const QString kStageRead = QStringLiteral("Reading the log");
const QString kStageWrite = QStringLiteral("Writing earth.kml");

} // namespace

struct LogMapExport::Run {
    enum class Phase { Open, Worked, Confirmed, Check, Write, Ended };
    Phase phase = Phase::Open;
    QString* bandPattern = nullptr;
    QString searchText;
    Recordset rs;
    bool rsOpen = false;
    std::unique_ptr<LogCount> count;
    std::unique_ptr<KmlFile> file;
    std::unique_ptr<KmlWriter> writer;
    QString lineColourBefore;
    int grid = -1, geData = -1, gridXY = -1, poly = -1, qsl = -1, prop = -1;
    qint64 written = 0;
    MapExportOutcome outcome;

    QString stage() const
    {
        if (count && (phase == Phase::Worked || phase == Phase::Confirmed))
            return count->stage();
        return phase == Phase::Write ? kStageWrite : kStageRead;
    }
    qint64 done() const
    {
        if (count && (phase == Phase::Worked || phase == Phase::Confirmed))
            return count->done();
        return written;
    }
    qint64 total() const
    {
        if (count && (phase == Phase::Worked || phase == Phase::Confirmed))
            return count->total();
        return rsOpen ? rs.recordCount() : 0;
    }
};

LogMapExport::LogMapExport(Station& station, LogMapFields& fields, MapViewer& viewer, QObject* parent)
    : QObject(parent)
    , station_(station)
    , fields_(fields)
    , viewer_(viewer)
{
}

LogMapExport::~LogMapExport()
{
    if (run_ && run_->file)
        run_->file->cancel();
}

MapExportOutcome LogMapExport::GoogleEarth(
    QString& bandPattern, const QString& searchText, const MapProgress& progress)
{
    if (run_)
        return {}; // an export is already under way
    begin(bandPattern, searchText);
    for (;;) {
        if (progress && !progress(run_->stage(), run_->done(), run_->total()))
            cancelRequested_ = true;
        if (!step())
            break;
    }
    return end();
}

bool LogMapExport::start(QString& bandPattern, const QString& searchText)
{
    if (run_)
        return false;
    begin(bandPattern, searchText);
    scheduleStep();
    return true;
}

void LogMapExport::cancel()
{
    if (run_)
        cancelRequested_ = true;
}

void LogMapExport::scheduleStep()
{
    QTimer::singleShot(0, this, [this] {
        if (!run_)
            return;
        emit progress(run_->stage(), run_->done(), run_->total());
        if (step())
            scheduleStep();
        else
            emit finished(end());
    });
}

void LogMapExport::begin(QString& bandPattern, const QString& searchText)
{
    cancelRequested_ = false;
    run_ = std::make_unique<Run>();
    run_->bandPattern = &bandPattern;
    run_->searchText = searchText;
    run_->outcome.path = Kml::outputPath();
}

MapExportOutcome LogMapExport::end()
{
    MapExportOutcome outcome = run_->outcome;
    run_.reset();
    cancelRequested_ = false;
    return outcome;
}

bool LogMapExport::stop(MapExportOutcome::Status status, const QString& message)
{
    Run& r = *run_;
    if (r.count && r.count->state() == LogCount::State::Running)
        r.count->cancel();
    if (r.file)
        r.file->cancel();
    if (r.writer) // nothing reached the file, so the line colour goes back too
        station_.lineColour = r.lineColourBefore;
    r.rs.close();
    r.outcome.status = status;
    r.outcome.message = message;
    if (!message.isEmpty())
        station_.prompts.information(message);
    r.phase = Run::Phase::Ended;
    return false;
}

bool LogMapExport::fail(const QString& numberAndDescription)
{
    return stop(MapExportOutcome::Status::Failed,
        numberAndDescription + QStringLiteral(" in procedure GoogleEarth_Click of Formular form5"));
}

bool LogMapExport::step()
{
    Run& r = *run_;
    if (r.phase == Run::Phase::Ended)
        return false;
    if (cancelRequested_)
        return stop(MapExportOutcome::Status::Cancelled);
    QElapsedTimer clock;
    clock.start();

    switch (r.phase) {
    case Run::Phase::Open:
        // Only with an empty search box is the export's recordset opened. Its rows are read
        // now, before SQNr stores new outlines: those reach the file from the next export on.
        if (r.searchText.isEmpty()) {
            r.rs.setConnection(station_.dbConnection);
            r.rs.setFilter(SqlText::logListFilter(*r.bandPattern));
            if (!r.rs.open(SqlText::LogWithGrid) || (r.rs.recordCount(), r.rs.hasError()))
                return fail(r.rs.errorText());
            r.rsOpen = true;
        }
        r.count = std::make_unique<LogCount>(
            station_, fields_, LogCount::Kind::SQNr, *r.bandPattern, r.searchText);
        // The same query on the same band: SQNr counts the rows just read instead of reading
        // them again; nothing was written in between, so it sees the same records.
        if (r.rsOpen)
            r.count->shareRows(r.rs);
        r.count->start();
        r.phase = Run::Phase::Worked;
        return true;

    case Run::Phase::Worked:
    case Run::Phase::Confirmed:
        if (r.count->state() == LogCount::State::Running
            && r.count->step(kSliceNs) == LogCount::State::Running)
            return true;
        if (r.count->state() == LogCount::State::Failed) // its message is shown already
            return stop(MapExportOutcome::Status::Failed);
        if (r.phase == Run::Phase::Worked) {
            r.count = std::make_unique<LogCount>(
                station_, fields_, LogCount::Kind::SQNQr, *r.bandPattern, r.searchText);
            r.count->start();
            r.phase = Run::Phase::Confirmed;
        } else {
            r.count.reset();
            r.phase = Run::Phase::Check;
        }
        return true;

    case Run::Phase::Check: {
        if (!r.rsOpen)
            return fail(QStringLiteral("Error 3704 (Operation is not allowed when the object is closed: "
                                       "clear the search box to show the log on the map)"));
        if (r.rs.atStart() || r.rs.atEnd()) {
            stop(MapExportOutcome::Status::NoRecords, kNoCoords);
            return false;
        }
        QString& pattern = *r.bandPattern;
        if (pattern == u"34%")
            pattern = QStringLiteral("34000"); // deliberate: so that the band text reads 3400
        if (pattern.isEmpty())
            return fail(QStringLiteral(
                "Error 5 (Invalid procedure call or argument: choose a band to show the log on the map)"));
        station_.documentName = station_.settings.textAt(Setting::MyCall) + u' '
            + pattern.left(pattern.size() - 1) + QStringLiteral(" MHz wkd/cfd ") + fields_.sqw + u'/'
            + fields_.sqc;

        r.rs.first();
        r.grid = r.rs.fieldIndex(QStringLiteral("Grid"));
        r.geData = r.rs.fieldIndex(QStringLiteral("GEdata"));
        r.gridXY = r.rs.fieldIndex(QStringLiteral("GEgridXY"));
        r.poly = r.rs.fieldIndex(QStringLiteral("GEpoly"));
        r.qsl = r.rs.fieldIndex(QStringLiteral("QSL"));
        r.prop = r.rs.fieldIndex(QStringLiteral("ProP"));
        r.file = std::make_unique<KmlFile>(r.outcome.path);
        if (!r.file->open())
            return fail(QStringLiteral("Error 75 (Path/File access error: %1: %2)")
                            .arg(FilePlace(r.outcome.path), r.file->errorString()));
        r.lineColourBefore = station_.lineColour;
        r.writer = std::make_unique<KmlWriter>(station_, *r.file);
        r.writer->begin();
        r.phase = Run::Phase::Write;
        return true;
    }

    case Run::Phase::Write: {
        // A column the table lacks reads as an empty text.
        const auto text = [&r](int field) { return field < 0 ? QString() : r.rs.text(field); };
        LogKmlRow row;
        while (!r.rs.atEnd()) {
            row.grid = text(r.grid);
            row.geData = text(r.geData);
            row.gridXY = text(r.gridXY);
            row.poly = text(r.poly);
            row.qsl = text(r.qsl);
            row.prop = text(r.prop);
            r.writer->logRecord(row, station_.lineStations);
            r.rs.next();
            if (++r.written % kBatch == 0 && clock.nsecsElapsed() >= kSliceNs)
                return true;
        }
        r.writer->end();
        r.rs.close();
        if (!r.file->commit())
            return fail(QStringLiteral("Error 75 (Path/File access error: %1: %2)")
                            .arg(FilePlace(r.outcome.path), r.file->errorString()));
        r.writer.reset();
        r.file.reset();
        r.outcome.status = MapExportOutcome::Status::Written;
        r.outcome.records = r.written;
        r.phase = Run::Phase::Ended;
        qCInfo(lcMapExport) << "wrote" << r.written << "log records to" << r.outcome.path;
        if (!viewer_.open(r.outcome.path)) {
            r.outcome.message = MapViewer::notShownText(r.outcome.path);
            station_.prompts.information(r.outcome.message);
        }
        return false;
    }

    case Run::Phase::Ended:
        break;
    }
    return false;
}
