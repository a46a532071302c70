// The composition root: one Station, the main window with its ports on real serial lines, the
// station's panels in its areas, and the secondary windows behind its menu.
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "ui/MessageBoxPrompts.h"
#include "ui/SignalClose.h"
#include "ui/StationAssembly.h"
#include "ui/form1/Form1.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kestrel"));
    MessageBoxPrompts prompts;
    Station station(prompts);

    Form1 form1(station, makeQtSerialLink);
    prompts.setParent(&form1);
    closeOnSignals(form1);

    // Everything is wired before load(), so that it takes part in the start-up.
    StationAssembly assembly(form1, station);

    QObject::connect(&form1, &Form1::unloaded, &app, &QApplication::quit, Qt::QueuedConnection);
    form1.load();
    form1.show();
    return app.exec();
}
