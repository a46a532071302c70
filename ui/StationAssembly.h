#pragma once
// Everything the main window hosts and opens, wired as the program runs it: the rig, rotator
// and keyer panels, the beacon list, the spectrum, the WSJT-X listener, and the windows behind
// the menu. main() builds one; end-to-end tests build the same, so they drive the program's own main window.
class BeaconStation;
class Form1;
class MapViewer;
class SpectrumPanel;
class Station;
class StationHub;
class StationPanels;
class WsjtxListener;

class StationAssembly {
public:
    // Call before form1.load(), so that every part takes part in the start-up.
    // viewer: nullptr for the desktop's map viewer.
    StationAssembly(Form1& form1, Station& station, MapViewer* viewer = nullptr);

    StationPanels& panels() { return *panels_; }
    BeaconStation& beacons() { return *beacons_; }
    SpectrumPanel& spectrum() { return *spectrum_; }
    StationHub& hub() { return *hub_; }
    // nullptr unless Kestrel.ini switches the WSJT-X listener on.
    WsjtxListener* wsjtx() { return wsjtx_; }

private:
    void registerWindows(Form1& form1, Station& station);
    void serveStation(Form1& form1, Station& station);
    void listenToWsjtx(Form1& form1, Station& station);

    // All four belong to the main window, like its other children.
    StationPanels* panels_;
    SpectrumPanel* spectrum_;
    BeaconStation* beacons_;
    StationHub* hub_;
    WsjtxListener* wsjtx_ = nullptr;
};
