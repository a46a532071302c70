// The composition root: one Station, the main window with its ports on real serial lines,
// the secondary windows registered with the main window's menu.
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "ui/MessageBoxPrompts.h"
#include "ui/form1/Form1.h"
#include "ui/form2/Form2.h"

#include <QApplication>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int signalPair[2] = { -1, -1 };

void onSignal(int)
{
    const char c = 1;
    (void)!::write(signalPair[1], &c, 1);
}

// Ctrl+C, or the TERM that stops a scripted run, closes the main window the ordinary way, so
// the settings are saved and the ports closed.
void closeOnSignals(Form1& form1)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPair) != 0)
        return;
    auto* notifier = new QSocketNotifier(signalPair[0], QSocketNotifier::Read, &form1);
    QObject::connect(notifier, &QSocketNotifier::activated, &form1, [&form1] {
        char c = 0;
        (void)!::read(signalPair[0], &c, 1);
        form1.close();
    });
    struct sigaction action { };
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kestrel"));
    MessageBoxPrompts prompts;
    Station station(prompts);

    Form1 form1(station, makeQtSerialLink);
    prompts.setParent(&form1);
    closeOnSignals(form1);

    // Panels go into form1's areas here (form1.placePanel) and menu windows are registered
    // before load(), so that they take part in the start-up.
    form1.registerWindow(
        QStringLiteral("mnuInitial"), [&](QWidget* parent) { return new Form2(station, form1, parent); });

    QObject::connect(&form1, &Form1::unloaded, &app, &QApplication::quit, Qt::QueuedConnection);
    form1.load();
    form1.show();
    return app.exec();
}
