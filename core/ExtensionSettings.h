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
// The log on a PostgreSQL server instead of a file: driver "postgresql" (default "sqlite"), the
// server's host (empty: its local socket), port (5432), database ("kestrel") and user (empty:
// the login name). The password never stands here: PGPASSWORD or ~/.pgpass.
inline const QString DatabaseDriver = QStringLiteral("database/driver");
inline const QString DatabaseHost = QStringLiteral("database/host");
inline const QString DatabasePort = QStringLiteral("database/port");
inline const QString DatabaseName = QStringLiteral("database/database");
inline const QString DatabaseUser = QStringLiteral("database/user");
// Sound input device description; empty: the system's default input.
inline const QString AudioDevice = QStringLiteral("audio/device");
// Camera device; empty: no camera, the overlay text is shown on a label.
inline const QString CameraDevice = QStringLiteral("camera/device");
// The main window's size and place, and where its splitter stands (Qt's own encoding, base64).
inline const QString WindowGeometry = QStringLiteral("window/geometry");
inline const QString WindowSplitter = QStringLiteral("window/splitter");
// Station hub: the rigctld- and rotctld-compatible servers ("on" switches one on; off by
// default), their TCP ports (0: any free port) and the address they listen on.
inline const QString HubRig = QStringLiteral("hub/rig");
inline const QString HubRigPort = QStringLiteral("hub/rigPort");
inline const QString HubRotator = QStringLiteral("hub/rotator");
inline const QString HubRotatorPort = QStringLiteral("hub/rotatorPort");
inline const QString HubAddress = QStringLiteral("hub/address");
// Where the GPS window's sentences come from: "serial" (default, Com3) or "gpsd" at host:port.
inline const QString GpsSource = QStringLiteral("gps/source");
inline const QString GpsdHost = QStringLiteral("gps/host");
inline const QString GpsdPort = QStringLiteral("gps/port");
// Cluster: "true" sends the own callsign by itself at the node's "login:" prompt.
inline const QString ClusterAutoLogin = QStringLiteral("cluster/autoLogin");
// Devices (rig, rotator, ports):
// "true" writes every byte on the serial ports to the kestrel.devices.link category.
inline const QString TraceLink = QStringLiteral("trace/link");
// Group of the transverter table, one line per band: <RF start MHz>=<IF start MHz>[,<width MHz>].
inline const QString TransverterGroup = QStringLiteral("transverters");
// The log's clock: "local" (default; the new-contact line fills the local time) or "utc".
// ADIF files are always in UTC; the import and export convert.
inline const QString LogClock = QStringLiteral("log/clock");
// WSJT-X's UDP reporting: "true" listens (off by default) on the address (127.0.0.1, or a
// multicast group, which is joined) and port (2237) set in WSJT-X as its UDP server.
inline const QString WsjtxEnabled = QStringLiteral("wsjtx/enabled");
inline const QString WsjtxAddress = QStringLiteral("wsjtx/address");
inline const QString WsjtxPort = QStringLiteral("wsjtx/port");
// The check-partial list of known calls (MASTER.SCP); empty: the one of Debian's hamradio-files.
inline const QString ScpFile = QStringLiteral("scp/file");
} // namespace ExtensionKey

class ExtensionSettings {
public:
    // The file in the current directory.
    static QString path();
    static QString value(const QString& key, const QString& fallback = QString());
    static void setValue(const QString& key, const QString& value);
};
