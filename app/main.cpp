// The composition root: one Station, the main window with its ports on real serial lines,
// the secondary windows registered with the main window's menu.
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "ui/MessageBoxPrompts.h"
#include "ui/form1/Form1.h"
#include "ui/form2/Form2.h"

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kestrel"));
    MessageBoxPrompts prompts;
    Station station(prompts);

    Form1 form1(station, makeQtSerialLink);
    prompts.setParent(&form1);

    // Panels of the station go into form1's areas here (form1.placePanel) and menu windows are
    // registered before load(), so that they see the start-up signals.
    form1.registerWindow(
        QStringLiteral("mnuInitial"), [&](QWidget* parent) { return new Form2(station, form1, parent); });

    QObject::connect(&form1, &Form1::unloaded, &app, &QApplication::quit, Qt::QueuedConnection);
    form1.load();
    form1.show();
    return app.exec();
}
