#include "mapexport/MapViewer.h"

#include "core/FilePlace.h"
#include "mapexport/MapExportLog.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QUrl>

DesktopMapViewer::DesktopMapViewer()
    : launchEnabled(QGuiApplication::platformName() != QLatin1String("offscreen")
        && qEnvironmentVariableIsEmpty("KESTREL_NO_VIEWER"))
{
}

bool DesktopMapViewer::open(const QString& path)
{
    qCInfo(lcMapExport) << "map written:" << QFileInfo(path).absoluteFilePath();
    if (!launchEnabled)
        return true;
    const QUrl url = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    if (QDesktopServices::openUrl(url))
        return true;
    qCWarning(lcMapExport) << "no viewer could open" << url;
    return false;
}

QString MapViewer::notShownText(const QString& path)
{
    return QStringLiteral("The map was written to %1, but no program to show it could be started. Open it "
                          "in Google Earth or another globe viewer, or register one for .kml files.")
        .arg(FilePlace(path));
}
