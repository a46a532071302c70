#pragma once
// "Kestrel.ini" beside Kestrel.txt: the settings the 47-line file has no room for. Read
// fresh on each call, so a file the simulator or the operator wrote is picked up.
#include <QString>

namespace ExtensionKey {
// Port text of the sensor box (main window's Com3); empty: the Com3 port number of Kestrel.txt.
inline const QString SensorPort = QStringLiteral("ports/sensor");
// Which of Com1/Com2 carries the rig's CAT commands: "Com1" (default) or "Com2".
inline const QString RigPort = QStringLiteral("rig/port");
// The microwave band option (1..9) last chosen on the main window.
inline const QString RigMicrowaveBand = QStringLiteral("rig/microwaveBand");
// Output-line backends: "none" (default), "dtr:<port text>", "rts:<port text>",
// "gpio:<chip>:<line>", for the CW key, elevation up and elevation down.
inline const QString KeyLine = QStringLiteral("lines/key");
inline const QString UpLine = QStringLiteral("lines/up");
inline const QString DownLine = QStringLiteral("lines/down");
// Address of the weather station's summary page; empty: no weather line.
inline const QString WeatherUrl = QStringLiteral("weather/url");
// Database file; empty: backup.db in the user's data directory (or one already beside the program).
inline const QString DatabaseFile = QStringLiteral("database/file");
// Sound input device description; empty: the system's default input.
inline const QString AudioDevice = QStringLiteral("audio/device");
// Camera device; empty: no camera, the overlay text is shown on a label.
inline const QString CameraDevice = QStringLiteral("camera/device");
// The main window's size and place, and where its splitter stands (Qt's own encoding, base64).
inline const QString WindowGeometry = QStringLiteral("window/geometry");
inline const QString WindowSplitter = QStringLiteral("window/splitter");
} // namespace ExtensionKey

class ExtensionSettings {
public:
    // The file in the current directory.
    static QString path();
    static QString value(const QString& key, const QString& fallback = QString());
    static void setValue(const QString& key, const QString& value);
};
