// The composition root: one Station, the main window with its ports on real serial lines, the
// station's panels in its areas, and the secondary windows behind its menu.
#include "core/Station.h"
#include "devices/link/QtSerialLink.h"
#include "ui/MessageBoxPrompts.h"
#include "ui/StationAssembly.h"
#include "ui/form1/Form1.h"

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

    // Everything is wired before load(), so that it takes part in the start-up.
    StationAssembly assembly(form1, station);

    QObject::connect(&form1, &Form1::unloaded, &app, &QApplication::quit, Qt::QueuedConnection);
    form1.load();
    form1.show();
    return app.exec();
}
