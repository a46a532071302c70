#pragma once
// Hands a written map to the globe viewer the desktop has registered for .kml files,
// without waiting for it. Exports take the interface so tests can record the launch.
#include <QString>
#include <QStringList>

class MapViewer {
public:
    virtual ~MapViewer() = default;
    virtual void open(const QString& path) = 0;
};

// QDesktopServices::openUrl on the file. The launch switch starts off on the offscreen
// platform and when KESTREL_NO_VIEWER is set, so no test ever starts a viewer.
class DesktopMapViewer : public MapViewer {
public:
    DesktopMapViewer();
    void open(const QString& path) override;

    bool launchEnabled = true;
};

class RecordingMapViewer : public MapViewer {
public:
    void open(const QString& path) override { opened << path; }
    QStringList opened;
};
