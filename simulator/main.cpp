#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <string>

#include "diagnostics/Print.h"
#include "simulator/VirtualDongle.h"

namespace {

using namespace velmorindal;

enum ExitStatus : int { success = 0, failed = 1, wrongUsage = 2 };

/// The signals that stop the program, kept from interrupting any thread so that they can be waited for.
sigset_t blockStopSignals() {
    sigset_t signals{};
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals, number);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

void serveUntilStopped(const char* directory) {
    const sigset_t signals = blockStopSignals();
    VirtualDongle dongle{directory, {.hums = true, .keepsReceivedFrames = false}};
    print(dongle.path().string());
    int received = 0;
    sigwait(&signals, &received);
    dongle.unplug();
    for (const std::string& line : storedSettingsInWords(dongle.state())) {
        print(line);
    }
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        writeLine(STDERR_FILENO, "Usage: velmorindal-simulator DIRECTORY");
        return wrongUsage;
    }
    try {
        serveUntilStopped(arguments[1]);
    } catch (const std::exception& error) {
        writeLine(STDERR_FILENO, std::string{"velmorindal-simulator: "} + error.what());
        return failed;
    }
    return success;
}
