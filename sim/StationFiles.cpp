#include "sim/StationFiles.h"

#include "core/ExtensionSettings.h"
#include "core/Prompts.h"
#include "core/Station.h"
#include "core/StationConfig.h"

#include <QDir>

namespace {

// The settings file lives in the current directory; work there and come back.
class CurrentDirectory {
public:
    explicit CurrentDirectory(const QString& dir)
        : previous_(QDir::currentPath())
        , ok_(QDir::setCurrent(dir))
    {
    }
    ~CurrentDirectory() { QDir::setCurrent(previous_); }
    bool ok() const { return ok_; }

private:
    QString previous_;
    bool ok_;
};

} // namespace

QString writeStationFiles(const QString& dir, const SimPlaces& places)
{
    if (!QDir().mkpath(dir))
        return QStringLiteral("cannot create the directory %1").arg(dir);
    const QString settingsFile = QDir(dir).absoluteFilePath(StationConfigPath());
    const CurrentDirectory here(dir);
    if (!here.ok())
        return QStringLiteral("cannot change to the directory %1").arg(dir);

    RecordingPrompts prompts;
    Station station(prompts);
    LoadStationConfig(station);
    // A file Kestrel cannot read whole is the operator's to repair: saving it here would put
    // defaults over what could not be read (the saved frequency, the CW texts).
    if (!prompts.shown.isEmpty())
        return QStringLiteral("%1 is left as it is; repair or remove it first. %2")
            .arg(settingsFile, prompts.shown.join(QLatin1Char(' ')));
    SettingsTable& s = station.settings;
    const auto port = [&s](int used, int number, const QString& path) {
        s.setInt16(used, 1);
        s.setText(number, path);
    };
    port(Setting::Com1Used, Setting::Com1Port, places.rig);
    port(Setting::Com2Used, Setting::Com2Port, places.rig2);
    port(Setting::Com3Used, Setting::Com3Port, places.gps);
    port(Setting::Com4Used, Setting::Com4Port, places.rotator);
    s.setText(Setting::Cluster1Host, QStringLiteral("127.0.0.1"));
    s.setText(Setting::Cluster1Port, QString::number(places.clusterPort));
    s.setInt16(Setting::ClusterChoice, 1);
    if (s.textAt(Setting::MyCall).trimmed().isEmpty())
        s.setText(Setting::MyCall, QStringLiteral("N0CALL"));
    if (s.textAt(Setting::MyLocator).trimmed().isEmpty())
        s.setText(Setting::MyLocator, QStringLiteral("JN48TH"));
    if (!SaveStationConfig(station))
        return QStringLiteral("cannot write %1: %2").arg(settingsFile, prompts.shown.join(QLatin1Char(' ')));

    ExtensionSettings::setValue(ExtensionKey::SensorPort, places.sensor);
    ExtensionSettings::setValue(ExtensionKey::RigPort, QStringLiteral("Com1"));
    return {};
}
