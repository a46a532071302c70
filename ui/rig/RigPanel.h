#pragma once
// The rig controls of the main window: channel and mode presets ("FT847"), VHF and microwave
// bands, tuning step ("QRG"), hold-to-tune buttons, the frequency display and push-to-talk.
// A thin face on RigController; works on Com1/Com2 of the window's StationPorts.
#include <QWidget>

class OptionGroup;
class QLabel;
class QPushButton;
class RigController;
class Station;
class StationPorts;

class RigPanel : public QWidget {
    Q_OBJECT
public:
    RigPanel(Station& station, StationPorts& ports, QWidget* parent = nullptr);

    RigController& controller() { return *rig_; }
    // The window's Com1 lamp: turns red when a preset finds Com1 not open.
    void setCom1Lamp(QLabel* lamp) { com1Lamp_ = lamp; }

    // Start-up: frequency (setting 34, kHz), tuning step (setting 33), microwave band
    // (Kestrel.ini rig/microwaveBand); the VHF band follows the frequency.
    void restoreFromSettings();
    // Shutdown: frequency and tuning step back into the table.
    void writeToSettings();

    // Selecting a band as a click would (the beacon list follows a beacon's band).
    void clickBandV(int index);
    void clickBandR(int index);

private:
    void showPtt(bool on);

    Station& station_;
    RigController* rig_;
    OptionGroup* optFT847_;
    OptionGroup* optBandV_;
    OptionGroup* optBandR_;
    OptionGroup* optQRG_;
    QPushButton* freqUp_;
    QPushButton* freqDwn_;
    QLabel* formatFre_;
    QPushButton* txRx_;
    QLabel* com1Lamp_ = nullptr;
};
