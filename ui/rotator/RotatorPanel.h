#pragma once
// The rotator controls of the main window: turn left/right, stop, the second set value
// (Text177), elevation up/down while held and the automatic elevation toggle. A thin face on
// RotatorController; the azimuth box Text160 is the window's own (beside its locator box) or,
// when none is handed in, one of this panel.
#include <QWidget>

#include <optional>

class OutputLines;
class QLineEdit;
class QPushButton;
class RotatorController;
class Station;
class StationPorts;

class RotatorPanel : public QWidget {
    Q_OBJECT
public:
    // text160: the window's azimuth box (Enter turns the antenna); locator: where the focus
    // goes back after that. Both may be nullptr.
    RotatorPanel(Station& station, StationPorts& ports, OutputLines& lines, QLineEdit* text160 = nullptr,
        QWidget* locator = nullptr, QWidget* parent = nullptr);

    RotatorController& controller() { return *rotator_; }
    QLineEdit* text160() const { return text160_; }

    // Turns the antenna to the azimuth in Text160 (Enter in Text160; the beacon list).
    void Antennedrehen();
    // The 200 ms tick: one automatic elevation step with this tick's sensor elevation.
    void autoElevationStep(std::optional<double> elevation);

private:
    RotatorController* rotator_;
    QLineEdit* text160_;
    QWidget* locator_;
    QLineEdit* text177_;
    QPushButton* eleAuto_;
};
