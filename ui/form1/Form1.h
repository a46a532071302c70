#pragma once
// The main window: the station panel. Owns the four serial ports, the 200 ms tick (rotator
// read-back, sensor box, compass, overlay), the weather line, the locator box and the menu of
// secondary windows; runs the start-up, activation and shutdown sequences. The rig, rotator,
// keyer, spectrum and beacon panels are placed into its areas and hook into its signals.
#include "core/SilenceWatch.h"
#include "devices/link/StationPorts.h"
#include "ui/form1/Form1Ui.h"
#include "ui/form1/MenuWindows.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QMap>
#include <QTimer>

#include <optional>

class QGroupBox;
class QNetworkAccessManager;
class QNetworkReply;
class Station;

class Form1 : public QMainWindow {
    Q_OBJECT
public:
    enum class Area { Rig, Rotator, Keyer, Spectrum, Beacons, Sensor };
    using WindowFactory = MenuWindows::Factory;

    Form1(Station& station, const StationPorts::Factory& makeLink, QWidget* parent = nullptr);
    ~Form1() override;

    // Start-up: settings file, logbook window object, weather fetch, ports, restored state,
    // compass, one box with what the start-up has to say, then the tick starts. A close
    // requested meanwhile waits for load() and then ends the program without saving.
    void load();
    // Port labels, then activated(); runs whenever the window becomes active.
    void activate();
    // One tick of `Timer`.
    void tick();

    // Puts a panel into an area, below what the area already shows (its placeholder goes).
    void placePanel(Area area, QWidget* panel);
    QGroupBox* areaBox(Area area) const;

    // menuName: "mnuARLog", "mnuGPS", "mnuInitial", "mnuQSL" or "mnuPacket".
    void registerWindow(const QString& menuName, WindowFactory factory);
    // Creates the window once (a placeholder when nothing is registered) and shows it.
    QWidget* showWindow(const QString& menuName);
    QWidget* windowInstance(const QString& menuName) const;

    Station& station() { return station_; }
    StationPorts& ports() { return ports_; }
    // Opens port n (1..4) unless it is open; the lamp and the status bar tell the outcome.
    bool openPort(int n, const QString& portText, const QString& settings);
    void closePort(int n);
    bool isPortOpen(int n) const;
    // The port text port n was last opened with (the table's number before that).
    QString portNumber(int n) const { return portNumbers_[n]; }
    QLabel* portLamp(int n) const { return ui_.lblCom[n]; }

    // The locator box: completes, checks, computes; result line in `Richtung`, whole degrees
    // in `Text160`, focus back to `Locator`. False when the locator was invalid.
    bool showBearingAndDistance();
    // The last elevation from the sensor box (thousandths / 1000); nothing before the first.
    std::optional<double> elevation() const { return elevation_; }
    QTimer& timer() { return timer_; }
    const Form1Ui& ui() const { return ui_; }

signals:
    // Start-up, after the settings file is read: panels restore their controls from the table.
    void restoring();
    // End of start-up (the beacon list loads here).
    void loaded();
    // Every activation, after the port labels (sound input, beacon reload).
    void activated();
    // Every tick after the read-back, sensor, compass and overlay (automatic elevation).
    void ticked();
    void sensorRead(double elevation, int temperature);
    // Closing: before the settings are written (the sound input closes).
    void queryUnload();
    // Closing: panels write their state into the table; the file is saved right after.
    void writingBack();
    // The settings are saved and the ports closed; the program ends.
    void unloaded();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void unload();
    void abandon();
    void fetchWeather();
    void onWeatherReply(QNetworkReply* reply);
    void onPortError(int n, const QString& text);
    void setLamp(int n, const QString& state, const QString& tip);
    void showPortProblems();
    // Counts the tick for port n's device; true while its read-outs may be shown. The lamp
    // turns amber while the port is open but the device silent.
    bool watchReplies(int n, bool answered);
    // Reopens a port whose device file went away, once it is back.
    void retryLostPorts();
    void updateOverlay();
    // The window's size and splitter as last left (Kestrel.ini), else fitted to the screen.
    void restoreLayout();

    Station& station_;
    StationPorts ports_;
    Form1Ui ui_;
    MenuWindows windows_;
    QTimer timer_;
    QNetworkAccessManager* network_ = nullptr;
    QString portNumbers_[5];
    QString portSettings_[5];
    bool portWanted_[5] = {}; // opened by the start-up or the settings, not closed since
    QElapsedTimer portRetry_[5];
    bool portGone_[5] = {}; // its device file was missing since the port failed
    SilenceWatch silence_[5];
    QMap<int, QString> portProblems_;
    QString portMessage_; // what the status bar shows about the ports, "" when nothing
    std::optional<double> elevation_;
    bool unloaded_ = false;
    bool starting_ = false;
    bool closeRequested_ = false;
};
