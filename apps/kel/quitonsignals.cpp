#include "quitonsignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace
{

int wakePipe[2] = {-1, -1};

/// Only what a signal handler may do: one byte that the event loop picks up.
void wake(int)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(wakePipe[1], &byte, 1);
}

} // namespace

void quitOnSignals()
{
    if (::pipe2(wakePipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *woken = new QSocketNotifier(wakePipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(woken, &QSocketNotifier::activated, QCoreApplication::instance(), [woken] {
        woken->setEnabled(false);
        QCoreApplication::quit();
    });
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, wake);
}
