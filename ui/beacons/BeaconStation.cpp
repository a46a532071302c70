#include "ui/beacons/BeaconStation.h"

#include "devices/rig/RigController.h"
#include "ui/beacons/BeaconPanel.h"
#include "ui/form1/Form1.h"
#include "ui/rig/RigPanel.h"
#include "ui/rig/StationPanels.h"
#include "ui/rotator/RotatorPanel.h"

#include <QLineEdit>

BeaconStation::BeaconStation(Form1& form1, StationPanels& panels, MapViewer* viewer)
    : QObject(&form1)
    , panel_(new BeaconPanel(form1.station(), viewer))
{
    form1.placePanel(Form1::Area::Beacons, panel_);

    BeaconHooks hooks;
    hooks.openSettings = [&form1] { form1.showWindow(QStringLiteral("mnuInitial")); };
    // rigBandHandler stays unset: the microwave band handler only records the band, and running
    // it would set the preset flag, which stays clear until the first band click after start-up.
    hooks.aimAt = [&form1](const QString& locator) -> std::optional<int> {
        form1.ui().Locator->setText(locator);
        if (!form1.showBearingAndDistance())
            return std::nullopt;
        return form1.ui().Text160->text().toInt();
    };
    hooks.followBand = [&panels](const BeaconTuning& tuning) {
        RigPanel& rigPanel = panels.rig();
        RigController& rig = rigPanel.controller();
        // A frequency the rig cannot take is refused before anything moves: the display and
        // the band buttons keep what the rig is really on.
        if (tuning.counter && !rig.rigFrequency(*tuning.counter)) {
            rig.tuneTo(*tuning.counter);
            return;
        }
        if (tuning.counter)
            rig.setCounter(*tuning.counter);
        if (tuning.band && tuning.band->vhfOption != 0) {
            // The rig takes over the beacon's frequency: with the preset flag clear the band
            // click keeps it and sends it, and the operator's next band click keeps it as well.
            rig.setPresetFlag(false);
            rigPanel.clickBandV(tuning.band->vhfOption);
            rig.setPresetFlag(false);
            return;
        }
        // A microwave band or one without a button (4 m): the band is noted, the frequency sent.
        if (tuning.band)
            rigPanel.clickBandR(tuning.band->microwaveOption);
        if (tuning.counter)
            rig.SendFreq(QString::number(*tuning.counter));
    };
    hooks.turnTo = [&form1, &panels](int degrees) {
        form1.ui().Text160->setText(QString::number(degrees));
        panels.rotator().Antennedrehen();
    };
    panel_->setHooks(std::move(hooks));

    connect(&form1, &Form1::restoring, panel_, &BeaconPanel::restoreFromSettings);
    connect(&form1, &Form1::loaded, panel_, &BeaconPanel::LoadBeaconList);
    connect(&form1, &Form1::activated, panel_, &BeaconPanel::activate);
    connect(&form1, &Form1::writingBack, panel_, &BeaconPanel::writeToSettings);
}
