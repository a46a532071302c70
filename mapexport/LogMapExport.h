#pragma once
// The logbook's "Show Recordsets/Band on GoogleEarth" export: selects the band's contacts
// that carry a locator, counts worked and confirmed squares (storing the outlines), names
// the document, writes "earth.kml" through the KML writer and hands it to the viewer.
//
// Call GoogleEarth() to run it to the end (progress may cancel), or start() to run the same
// steps in slices on the event loop with progress() signals and cancel(). A cancelled or
// failed export leaves the previous "earth.kml" whole. Messages go through station.prompts.
#include "logbook/db/Recordset.h"
#include "mapexport/LogCount.h"
#include "mapexport/MapProgress.h"

#include <QObject>
#include <QString>

#include <memory>

class KmlFile;
class KmlWriter;
class MapViewer;
class Station;
struct LogMapFields;

struct MapExportOutcome {
    enum class Status {
        Written, // "earth.kml" replaced and the viewer started
        NoRecords, // "No lat/long coords where found." shown; nothing written
        Cancelled, // stopped on request; the previous file is untouched
        Failed // a message was shown; the previous file is untouched
    };
    Status status = Status::Failed;
    QString message; // the text shown, if any
    qint64 records = 0;
    QString path;
};

class LogMapExport : public QObject {
    Q_OBJECT
public:
    // The window keeps `fields` (its count captions and pass-over square) and `viewer`.
    LogMapExport(Station& station, LogMapFields& fields, MapViewer& viewer, QObject* parent = nullptr);
    ~LogMapExport() override;

    // The whole export now. `bandPattern` is normally station.bandPattern: an export on "34%"
    // rewrites it to "34000" for the rest of the run (deliberate). `searchText` is the text of
    // the window's search box; the export needs it empty.
    MapExportOutcome GoogleEarth(
        QString& bandPattern, const QString& searchText, const MapProgress& progress = {});

    // The same export in slices on the event loop: emits progress() as it goes and finished()
    // at the end. `bandPattern` must outlive the run. Returns false if a run is under way.
    bool start(QString& bandPattern, const QString& searchText);
    // Stops a running export after the current slice; finished() then reports Cancelled.
    void cancel();
    bool isRunning() const { return run_ != nullptr; }

signals:
    void progress(const QString& stage, qint64 done, qint64 total);
    void finished(const MapExportOutcome& outcome);

private:
    struct Run;
    void begin(QString& bandPattern, const QString& searchText);
    // Does one slice; false when the run has ended (outcome in run_).
    bool step();
    void scheduleStep();
    MapExportOutcome end();
    bool fail(const QString& numberAndDescription);
    bool stop(MapExportOutcome::Status status, const QString& message = {});

    Station& station_;
    LogMapFields& fields_;
    MapViewer& viewer_;
    std::unique_ptr<Run> run_;
    bool cancelRequested_ = false;
};
