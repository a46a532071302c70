#include "mapexport/MapViewer.h"

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

void DesktopMapViewer::open(const QString& path)
{
    if (!launchEnabled)
        return;
    const QUrl url = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    if (!QDesktopServices::openUrl(url))
        qCWarning(lcMapExport) << "no viewer could open" << url;
}
