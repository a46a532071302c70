#pragma once
// The main window's controls and their arrangement as a station panel: rig, rotator with the
// compass and the locator box, sensor and weather, CW keyer and spectrum in a scrolling area,
// the beacon list below a splitter, each in its own group box; the port lamps in a row of
// their own above the status bar, whose whole width is left to its messages.
#include <QString>

class Compass;
class QAction;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMainWindow;
class QScrollArea;
class QSplitter;
class QWidget;

struct Form1Ui {
    QGroupBox* rigBox = nullptr;
    QGroupBox* rotatorBox = nullptr;
    QGroupBox* sensorBox = nullptr;
    QGroupBox* keyerBox = nullptr;
    QGroupBox* spectrumBox = nullptr;
    QGroupBox* beaconBox = nullptr;
    QSplitter* mainSplitter = nullptr; // the panels above, the beacon list below
    QScrollArea* panelScroll = nullptr;

    Compass* Picture1 = nullptr;
    QLabel* Label1 = nullptr; // heading read back from the rotator
    QLabel* Label30 = nullptr; // elevation from the sensor box
    QLabel* Label31 = nullptr; // temperature from the sensor box
    QLabel* Label28 = nullptr; // weather line
    QLabel* Label29 = nullptr; // caption kept in setting 19
    QLabel* VCX = nullptr; // where the camera picture would be: the "Az: ... Ele: ..." overlay
    QLineEdit* Locator = nullptr;
    QLineEdit* Richtung = nullptr;
    QLineEdit* Text160 = nullptr;

    QLabel* lblCom[5] = {}; // 1..4: lblCom1, lblCom2, lblCom3 (sensor box), lblCom4

    QAction* mnuARLog = nullptr;
    QAction* mnuGPS = nullptr;
    QAction* mnuInitial = nullptr;
    QAction* mnuQSL = nullptr;
    QAction* mnuPacket = nullptr;

    void setupUi(QMainWindow* window);

    // A grey note shown in an area until its panel is placed there.
    static QWidget* placeholder(const QString& text, QWidget* parent);
};
