#include "QuitSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace velmorindal {

namespace {

constexpr std::array quitSignals{SIGTERM, SIGINT, SIGHUP};

/// What a signal handler writes to and the event loop reads from.
std::array<int, 2> wakePipe{-1, -1};

void wake(int /*signal*/) {
    const int interrupted = errno;
    const char byte = 0;
    // A full pipe wakes the loop as well; nothing else can be reported from a signal handler.
    [[maybe_unused]] const auto written = ::write(wakePipe[1], &byte, 1);
    errno = interrupted;
}

/// Makes both ends non-blocking and closed in child programs, in separate calls, since not every platform has
/// one call for it.
bool openWakePipe() {
    if (::pipe(wakePipe.data()) != 0) {
        return false;
    }
    for (const int end : wakePipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    return true;
}

void handleQuitSignals(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : quitSignals) {
        struct sigaction before {};
        ::sigaction(signal, nullptr, &before);
        // The program may have been started with a signal ignored, as nohup does.
        if (before.sa_handler != SIG_IGN) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

}  // namespace

QuitSignals::QuitSignals(std::function<void()> quit) {
    if (!openWakePipe()) {
        // The signals keep their default action, which ends the program at once.
        return;
    }
    auto* notifier = new QSocketNotifier{wakePipe[0], QSocketNotifier::Read, this};
    connect(notifier, &QSocketNotifier::activated, this, [quit = std::move(quit)] {
        char byte = 0;
        while (::read(wakePipe[0], &byte, 1) > 0) {
        }
        quit();
    });
    handleQuitSignals(wake);
}

QuitSignals::~QuitSignals() {
    handleQuitSignals(SIG_DFL);
    for (int& end : wakePipe) {
        if (end >= 0) {
            ::close(std::exchange(end, -1));
        }
    }
}

}  // namespace velmorindal
