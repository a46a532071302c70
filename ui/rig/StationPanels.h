#pragma once
// Puts the rig, rotator and CW keyer panels into the main window and hooks them to its life:
// restoring and writing back their settings, the automatic elevation step on every tick with
// that tick's sensor reading, Enter in the window's azimuth box. Owns the output lines.
#include <QObject>

#include <memory>
#include <optional>

class Form1;
class KeyerPanel;
class OutputLines;
class RigPanel;
class RotatorPanel;

class StationPanels : public QObject {
    Q_OBJECT
public:
    // Call before form1.load(), so the panels see the start-up signals. lines: the output-line
    // backends (OutputLines::fromSettings() for the station).
    StationPanels(Form1& form1, std::unique_ptr<OutputLines> lines);
    ~StationPanels() override;

    RigPanel& rig() { return *rig_; }
    RotatorPanel& rotator() { return *rotator_; }
    KeyerPanel& keyer() { return *keyer_; }
    OutputLines& lines() { return *lines_; }

private:
    Form1& form1_;
    std::unique_ptr<OutputLines> lines_;
    RigPanel* rig_;
    RotatorPanel* rotator_;
    KeyerPanel* keyer_;
    std::optional<double> elevation_; // this tick's sensor reading
};
