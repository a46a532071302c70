#pragma once
// The main window's rotator: azimuth commands on Com4, the heading read-back of the tick, the
// elevation motor on output lines 19 (up) and 18 (down), held by hand or pulsed by the
// automatic mode once per tick. Works on StationPorts' Com4, OutputLines and the Station's
// hold flag; pulses are timed off the window's thread.
#include "devices/lines/LinePulser.h"
#include "devices/rotator/RotatorCodec.h"

#include <QObject>

#include <optional>

class Station;
class StationPorts;
class SerialLink;
class OutputLines;

class RotatorController : public QObject {
    Q_OBJECT
public:
    RotatorController(Station& station, StationPorts& ports, OutputLines& lines, QObject* parent = nullptr);

    // Turns to the azimuth in the box: an empty box becomes "000"; returns the box's new text
    // (formatted "000") after writing "AP1" + text + CR + ";" to Com4.
    QString Antennedrehen(const QString& text160);
    // Enter in Text177: "AW1" + text formatted "000" + ";".
    void sendSecondSetValue(const QString& text177);
    void turnLeft();
    void turnRight();
    void Rotorstop_click();

    // The main window's tick query on its Com4: writes "AI1;" and returns the first three
    // characters of what the port has received since the last call, nullopt when nothing
    // came (the tick counts that as silence), without waiting.
    static std::optional<QString> queryHeading(SerialLink& com4);

    // Elevation by hand: mouse-down switches the automatic mode off, ends a running pulse and
    // waits for its off edge, then runs the motor until mouse-up (the Station's hold flag is
    // set meanwhile). The output lines refuse the other direction while one runs.
    void elevationPressed(bool up);
    void elevationReleased(bool up);

    // One step of the automatic mode, called by the window's 200 ms tick with the elevation
    // as the window shows it (nullopt when the sensor gave none): at most one pulse, and the
    // caption and colour of EleAuto signalled.
    void autoElevationStep(std::optional<double> elevation);
    void pulseUp();
    void pulseDown();
    void waitForPulses() { pulser_.waitIdle(); }

    bool isAuto() const { return auto_; }
    void setAuto(bool on);
    int pulseLengthMs() const { return pulseLengthMs_; }

signals:
    void autoChanged(bool on);
    void autoDisplayChanged(const QString& caption, int colour);
    void stopPressed(); // RotorStop turns red

private:
    SerialLink& com4() const;

    Station& station_;
    StationPorts& ports_;
    OutputLines& lines_;
    LinePulser pulser_;
    bool auto_ = false;
    bool held_ = false; // an elevation button is down: no automatic pulse
    int pulseLengthMs_ = 50;
};
