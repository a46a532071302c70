#pragma once
// Hands a written map to the globe viewer the desktop has registered for .kml files,
// without waiting for it. Exports take the interface so tests can record the launch.
#include <QString>
#include <QStringList>

class MapViewer {
public:
    virtual ~MapViewer() = default;
    // False when no program could be started to show the file.
    virtual bool open(const QString& path) = 0;

    // What the exports tell the operator then: where the map is, and that it was not shown.
    static QString notShownText(const QString& path);
};

// QDesktopServices::openUrl on the file. The launch switch starts off on the offscreen
// platform and when KESTREL_NO_VIEWER is set, so no test ever starts a viewer.
class DesktopMapViewer : public MapViewer {
public:
    DesktopMapViewer();
    bool open(const QString& path) override;

    bool launchEnabled = true;
};

class RecordingMapViewer : public MapViewer {
public:
    bool open(const QString& path) override
    {
        opened << path;
        return opens;
    }
    QStringList opened;
    bool opens = true; // false: as if no viewer were installed
};
