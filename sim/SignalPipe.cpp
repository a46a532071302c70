#include "sim/SignalPipe.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int pipeFds[2] = { -1, -1 };

extern "C" void onSignal(int number)
{
    const int saved = errno;
    const char byte = char(number);
    [[maybe_unused]] const ssize_t n = ::write(pipeFds[1], &byte, 1);
    errno = saved;
}

} // namespace

SignalPipe::SignalPipe(QObject* parent)
    : QObject(parent)
{
    if (::pipe2(pipeFds, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    notifier_ = std::make_unique<QSocketNotifier>(pipeFds[0], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, &SignalPipe::onReadable);

    struct sigaction sa { };
    sa.sa_handler = onSignal;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = SA_RESTART;
    for (int number : { SIGINT, SIGTERM, SIGUSR1 })
        ::sigaction(number, &sa, nullptr);
    // A reader that went away must not kill the station, nor reading a terminal stop it.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGTTIN, SIG_IGN);
}

SignalPipe::~SignalPipe()
{
    for (int number : { SIGINT, SIGTERM, SIGUSR1 })
        std::signal(number, SIG_DFL);
    notifier_.reset();
    for (int& fd : pipeFds) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

void SignalPipe::onReadable()
{
    char bytes[16];
    ssize_t n;
    while ((n = ::read(pipeFds[0], bytes, sizeof bytes)) > 0) {
        for (ssize_t i = 0; i < n; ++i) {
            if (bytes[i] == SIGUSR1)
                emit statusRequested();
            else
                emit stopRequested();
        }
    }
}
