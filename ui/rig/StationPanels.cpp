#include "ui/rig/StationPanels.h"

#include "devices/keyer/KeyerController.h"
#include "devices/lines/OutputLines.h"
#include "ui/form1/Form1.h"
#include "ui/keyer/KeyerPanel.h"
#include "ui/rig/RigPanel.h"
#include "ui/rotator/RotatorPanel.h"

#include <QLineEdit>
#include <QStatusBar>

StationPanels::StationPanels(Form1& form1, std::unique_ptr<OutputLines> lines)
    : QObject(&form1)
    , form1_(form1)
    , lines_(std::move(lines))
{
    Station& station = form1.station();
    StationPorts& ports = form1.ports();
    rig_ = new RigPanel(station, ports);
    rotator_ = new RotatorPanel(station, ports, *lines_, form1.ui().Text160, form1.ui().Locator);
    keyer_ = new KeyerPanel(station, rig_->controller(), *lines_);
    form1.placePanel(Form1::Area::Rig, rig_);
    form1.placePanel(Form1::Area::Rotator, rotator_);
    form1.placePanel(Form1::Area::Keyer, keyer_);
    rig_->setCom1Lamp(form1.portLamp(1));

    connect(&form1, &Form1::restoring, this, [this] {
        rig_->restoreFromSettings();
        keyer_->restoreFromSettings();
    });
    // The transmitter must not stay keyed when the window goes: before the ports close.
    connect(&form1, &Form1::queryUnload, this, [this] { keyer_->controller().stopNow(); });
    connect(&form1, &Form1::writingBack, this, [this] {
        rig_->writeToSettings();
        keyer_->writeToSettings();
    });
    connect(&form1, &Form1::sensorRead, this, [this](double elevation, int) { elevation_ = elevation; });
    connect(&form1, &Form1::ticked, this, [this] {
        // a tick without a sensor reading moves nothing: never pulse on an old value
        rotator_->autoElevationStep(elevation_);
        elevation_.reset();
    });
    connect(&form1, &Form1::loaded, this, [this] {
        if (!lines_->problems().isEmpty())
            form1_.statusBar()->showMessage(lines_->problems().join(QStringLiteral("  |  ")));
    });
}

StationPanels::~StationPanels() = default;
