#pragma once
// Puts the beacon panel into the main window's beacon area and wires its hooks: the chosen
// beacon's locator into the window's locator box (bearing and distance shown), its band and
// frequency to the rig panel, the heading to the rotator, the settings dialog when the own
// station is not set up; and the list to the window's start-up, activation and shutdown.
#include <QObject>

class BeaconPanel;
class Form1;
class MapViewer;
class StationPanels;

class BeaconStation : public QObject {
    Q_OBJECT
public:
    // Call before form1.load(), after the rig and rotator panels exist. viewer: nullptr for
    // the desktop's viewer.
    BeaconStation(Form1& form1, StationPanels& panels, MapViewer* viewer = nullptr);

    BeaconPanel& panel() { return *panel_; }

private:
    BeaconPanel* panel_;
};
