// The composition root: one Station, the main window with its ports on real serial lines, the
// station's panels in its areas, and the secondary windows behind its menu.
#include "core/Station.h"
#include "devices/lines/OutputLines.h"
#include "devices/link/QtSerialLink.h"
#include "ui/MessageBoxPrompts.h"
#include "ui/beacons/BeaconStation.h"
#include "ui/cluster/ClusterWindow.h"
#include "ui/form1/Form1.h"
#include "ui/form2/Form2.h"
#include "ui/gps/Form4.h"
#include "ui/logbook/Form5.h"
#include "ui/qsl/Form6.h"
#include "ui/rig/StationPanels.h"
#include "devices/rig/RigController.h"
#include "logbook/db/DatabaseFile.h"
#include "ui/rig/RigPanel.h"
#include "ui/spectrum/SpectrumPanel.h"

#include <QApplication>
#include <QFileDialog>
#include <QMenuBar>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int signalPair[2] = { -1, -1 };

void onSignal(int)
{
    const char c = 1;
    (void)!::write(signalPair[1], &c, 1);
}

// Ctrl+C, or the TERM that stops a scripted run, closes the main window the ordinary way, so
// the settings are saved and the ports closed.
void closeOnSignals(Form1& form1)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPair) != 0)
        return;
    auto* notifier = new QSocketNotifier(signalPair[0], QSocketNotifier::Read, &form1);
    QObject::connect(notifier, &QSocketNotifier::activated, &form1, [&form1] {
        char c = 0;
        (void)!::read(signalPair[0], &c, 1);
        form1.close();
    });
    struct sigaction action { };
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kestrel"));
    MessageBoxPrompts prompts;
    Station station(prompts);

    Form1 form1(station, makeQtSerialLink);
    prompts.setParent(&form1);
    closeOnSignals(form1);

    // Everything is wired before load(), so that it takes part in the start-up.
    StationPanels panels(form1, OutputLines::fromSettings());
    BeaconStation beacons(form1, panels);
    auto* spectrum = new SpectrumPanel(station);
    form1.placePanel(Form1::Area::Spectrum, spectrum);
    QObject::connect(&form1, &Form1::activated, spectrum, [spectrum] { spectrum->start(); });
    QObject::connect(&form1, &Form1::queryUnload, spectrum, &SpectrumPanel::stop);

    form1.registerWindow(
        QStringLiteral("mnuARLog"), [&](QWidget* parent) { return new Form5(station, parent); });
    form1.registerWindow(
        QStringLiteral("mnuGPS"), [&](QWidget* parent) { return new Form4(station, parent); });
    form1.registerWindow(
        QStringLiteral("mnuInitial"), [&](QWidget* parent) { return new Form2(station, form1, parent); });
    form1.registerWindow(
        QStringLiteral("mnuQSL"), [&](QWidget* parent) { return new Form6(station, parent); });
    form1.registerWindow(QStringLiteral("mnuPacket"), [&](QWidget* parent) {
        auto* cluster = new ClusterWindow(station, parent);
        cluster->setOpenSettings([&form1] { form1.showWindow(QStringLiteral("mnuInitial")); });
        // A picked spot tunes the rig through the same path as the main window's own tuning.
        cluster->setTuneTo([&panels](const QString& tenHz) {
            RigController& rig = panels.rig().controller();
            rig.setCounter(tenHz.toLongLong());
            rig.SendFreq(tenHz);
        });
        return cluster;
    });

    // A recording can stand in for the sound card, to look at it or to try the display.
    QAction* recording = form1.menuBar()->addAction(QStringLiteral("&Recording..."));
    recording->setObjectName(QStringLiteral("mnuRecording"));
    QObject::connect(recording, &QAction::triggered, spectrum, [&form1, spectrum] {
        const QString path = QFileDialog::getOpenFileName(
            &form1, QStringLiteral("Open recording"), QString(), QStringLiteral("WAV files (*.wav)"));
        if (!path.isEmpty())
            spectrum->openWaveFile(path);
    });

    // Leave backup.db whole on its own, without its write-ahead journal beside it.
    QObject::connect(&form1, &Form1::unloaded, &app, [&station] {
        if (!station.dbConnection.isEmpty())
            DatabaseFile::checkpoint(station.dbConnection);
    });

    QObject::connect(&form1, &Form1::unloaded, &app, &QApplication::quit, Qt::QueuedConnection);
    form1.load();
    form1.show();
    return app.exec();
}
