#include "ui/StationAssembly.h"

#include "core/ExtensionSettings.h"
#include "core/Station.h"
#include "devices/lines/OutputLines.h"
#include "devices/rig/RigController.h"
#include "gps/GpsdSource.h"
#include "hub/StationHub.h"
#include "logbook/db/DatabaseFault.h"
#include "logbook/db/DatabaseFile.h"
#include "mapexport/ImportLocator.h"
#include "ui/beacons/BeaconStation.h"
#include "ui/cluster/ClusterWindow.h"
#include "ui/form1/Form1.h"
#include "ui/form2/Form2.h"
#include "ui/gps/Form4.h"
#include "ui/logbook/Form5.h"
#include "ui/qsl/Form6.h"
#include "ui/rig/RigPanel.h"
#include "ui/rig/StationPanels.h"
#include "ui/rotator/RotatorPanel.h"
#include "ui/spectrum/SpectrumPanel.h"
#include "wsjtx/WsjtxListener.h"

#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QStatusBar>

StationAssembly::StationAssembly(Form1& form1, Station& station, MapViewer* viewer)
    : panels_(new StationPanels(form1, OutputLines::fromSettings()))
    , spectrum_(new SpectrumPanel(station))
{
    SpectrumPanel* spectrum = spectrum_;
    form1.placePanel(Form1::Area::Spectrum, spectrum);
    // Activation opens the sound input before the beacon list reloads: connected first.
    QObject::connect(&form1, &Form1::activated, spectrum, [spectrum] { spectrum->start(); });
    QObject::connect(&form1, &Form1::queryUnload, spectrum, &SpectrumPanel::stop);
    beacons_ = new BeaconStation(form1, *panels_, viewer);

    // A recording can stand in for the sound card, to look at it or to try the display.
    QAction* recording = form1.menuBar()->addAction(QStringLiteral("&Recording..."));
    recording->setObjectName(QStringLiteral("mnuRecording"));
    QObject::connect(recording, &QAction::triggered, spectrum, [&form1, spectrum] {
        const QString path = QFileDialog::getOpenFileName(&form1, QStringLiteral("Open recording"), QString(),
            QStringLiteral("Recordings (*.wav *.flac *.ogg *.oga *.opus *.aif *.aiff *.au *.caf *.w64);;"
                           "All files (*)"));
        if (!path.isEmpty())
            spectrum->openWaveFile(path);
    });
    QAction* soundCard = form1.menuBar()->addAction(QStringLiteral("&Sound card"));
    soundCard->setObjectName(QStringLiteral("mnuSoundCard"));
    soundCard->setToolTip(QStringLiteral("Back from a recording to the live sound card"));
    QObject::connect(soundCard, &QAction::triggered, spectrum, &SpectrumPanel::useSoundCard);

    // Leave backup.db whole on its own, without its write-ahead journal beside it.
    QObject::connect(&form1, &Form1::unloaded, &form1, [&station] {
        if (!station.dbConnection.isEmpty())
            DatabaseFile::checkpoint(station.dbConnection);
    });

    serveStation(form1, station);
    listenToWsjtx(form1, station);
    registerWindows(form1, station);
}

void StationAssembly::serveStation(Form1& form1, Station& station)
{
    RotatorPanel& rotator = panels_->rotator();
    HubRotator::Window window;
    window.readBack = [&form1] { return form1.ui().Label1->text(); };
    window.elevation = [&form1] { return form1.elevation(); };
    window.showAzimuth = [&rotator](const QString& text) {
        if (rotator.text160())
            rotator.text160()->setText(text);
    };
    hub_ = new StationHub(
        station, form1.ports(), panels_->rig().controller(), rotator.controller(), std::move(window), &form1);
    QObject::connect(&form1, &Form1::ticked, hub_, [hub = hub_] { hub->rotator().tick(); });
    hub_->start();
}

namespace {

// The logbook window's object is made at start, before any database access. A database that
// cannot serve gets one message here, naming the file; what fails with it at start (the list,
// the beacons) would only repeat it.
void connectDatabase(Station& station)
{
    if (!station.dbConnection.isEmpty())
        return;
    const DatabaseFile::Opening o = DatabaseFile::open(DatabaseFile::systemPlaces());
    station.dbConnection = o.path;
    if (o.error)
        station.prompts.reportOnce(DatabaseFaultText(o.path, o.error), PromptGate::Fault::Cause);
    else if (!o.notice.isEmpty()) // a log carried over or a stray journal moved aside
        station.prompts.information(o.notice);
}

} // namespace

void StationAssembly::listenToWsjtx(Form1& form1, Station& station)
{
    const WsjtxSettings settings = WsjtxSettings::fromIni();
    if (!settings.enabled)
        return;
    wsjtx_ = new WsjtxListener(&form1);
    auto* shown = new QLabel(&form1);
    shown->setObjectName(QStringLiteral("wsjtxStatus"));
    form1.statusBar()->addPermanentWidget(shown);
    QObject::connect(wsjtx_, &WsjtxListener::statusChanged, shown, &QLabel::setText);
    // Contacts go into the log the start-up has opened.
    QObject::connect(&form1, &Form1::loaded, wsjtx_, [&form1, &station, settings, wsjtx = wsjtx_] {
        connectDatabase(station);
        // The own locator as it stands when each contact arrives (Initial or the GPS may move it).
        auto locate = [&station](const QString& grid, MapPosition& p) {
            return ImportLocator(station.settings.textAt(Setting::MyLocator))(grid, p);
        };
        wsjtx->setContactLog(
            std::make_unique<WsjtxContactLog>(station.dbConnection, locate, LogClock::configured()));
        if (!wsjtx->listen(settings.address, settings.port))
            form1.statusBar()->showMessage(QStringLiteral("WSJT-X: cannot listen on %1 port %2: %3")
                                               .arg(settings.address.toString())
                                               .arg(settings.port)
                                               .arg(wsjtx->error()));
    });
}

void StationAssembly::registerWindows(Form1& form1, Station& station)
{
    form1.registerWindow(QStringLiteral("mnuARLog"), [&station, wsjtx = wsjtx_](QWidget* parent) {
        connectDatabase(station);
        auto* form5 = new Form5(station, parent);
        if (wsjtx)
            form5->attachWsjtx(*wsjtx);
        return form5;
    });
    form1.registerWindow(QStringLiteral("mnuGPS"), [&station](QWidget* parent) {
        auto* form4 = new Form4(station, parent);
        if (ExtensionSettings::value(ExtensionKey::GpsSource) == u"gpsd") {
            auto* gpsd = new GpsdSource(
                ExtensionSettings::value(ExtensionKey::GpsdHost, QStringLiteral("127.0.0.1")),
                ExtensionSettings::value(ExtensionKey::GpsdPort, QStringLiteral("2947")).toUShort(), form4);
            QObject::connect(gpsd, &GpsdSource::bytesArrived, form4, &Form4::bytesArrived);
            QObject::connect(gpsd, &GpsdSource::report, form4, &Form4::report);
            gpsd->start();
        }
        return form4;
    });
    form1.registerWindow(QStringLiteral("mnuInitial"),
        [&station, &form1](QWidget* parent) { return new Form2(station, form1, parent); });
    form1.registerWindow(
        QStringLiteral("mnuQSL"), [&station](QWidget* parent) { return new Form6(station, parent); });
    StationPanels* panels = panels_;
    form1.registerWindow(QStringLiteral("mnuPacket"), [&station, &form1, panels](QWidget* parent) {
        auto* cluster = new ClusterWindow(station, parent);
        cluster->setOpenSettings([&form1] { form1.showWindow(QStringLiteral("mnuInitial")); });
        // A picked spot tunes the rig through the same path as the main window's own tuning.
        cluster->setTuneTo(
            [panels](const QString& tenHz) { panels->rig().controller().tuneTo(tenHz.toLongLong()); });
        return cluster;
    });
}
