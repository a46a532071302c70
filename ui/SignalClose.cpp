#include "ui/SignalClose.h"

#include <QSocketNotifier>
#include <QWidget>

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

} // namespace

void closeOnSignals(QWidget& window)
{
    if (signalPair[0] < 0 && ::socketpair(AF_UNIX, SOCK_STREAM, 0, signalPair) != 0)
        return;
    auto* notifier = new QSocketNotifier(signalPair[0], QSocketNotifier::Read, &window);
    QObject::connect(notifier, &QSocketNotifier::activated, &window, [&window] {
        char c = 0;
        (void)!::read(signalPair[0], &c, 1);
        window.close();
    });
    struct sigaction action { };
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}
