#include "core/Station.h"
#include "core/StationConfig.h"
#include "ui/MessageBoxPrompts.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kestrel"));
    MessageBoxPrompts prompts;
    Station station(prompts);
    LoadStationConfig(station);

    QMainWindow window;
    window.setObjectName(QStringLiteral("form1"));
    window.setWindowTitle(QStringLiteral("Kestrel"));
    window.resize(1000, 700);
    window.show();
    const int rc = app.exec();
    SaveStationConfig(station);
    return rc;
}
