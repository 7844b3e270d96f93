#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <filesystem>
#include <list>
#include <span>
#include <string>

#include "Print.h"
#include "Record.h"
#include "ReplayPort.h"
#include "SimulatorCommandLine.h"
#include "VirtualDongle.h"

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

void printHelp() {
    writeLine(
        STDOUT_FILENO,
        std::string{SimulatorCommandLine::usage} +
            "\nServes a simulated dongle and device as DIRECTORY/cu.usbmodem-simulated until interrupted.\n"
            "\n"
            "Options:\n"
            "  -h, --help     Print this help and exit.\n"
            "  -v, --version  Print the version and exit.\n"
            "  --replay FILE  Answer as the device did in a record of velmorindal-setup, and say at which\n"
            "                 line the host departs from it.");
}

void waitForStop(const sigset_t& signals) {
    int received = 0;
    sigwait(&signals, &received);
}

void serveUntilStopped(const std::string& directory) {
    const sigset_t signals = blockStopSignals();
    VirtualDongle dongle{directory, {.hums = true, .keepsReceivedFrames = false}};
    print(dongle.path().string());
    waitForStop(signals);
    dongle.unplug();
    for (const std::string& line : storedSettingsInWords(dongle.state())) {
        print(line);
    }
}

/// @returns whether the host did as in the record.
bool replayUntilStopped(const std::string& record, const std::string& directory) {
    const auto ports = eventsByPort(readRecord(record));
    if (ports.empty()) {
        throw RecordError{record + ": no port was opened in this record"};
    }
    const sigset_t signals = blockStopSignals();
    std::list<ReplayPort> dongles;
    for (const auto& [number, events] : ports) {
        std::string name = "cu.usbmodem-simulated";
        if (!dongles.empty()) {
            name += '-';
            name += std::to_string(dongles.size() + 1);
        }
        dongles.emplace_back(std::filesystem::path{directory} / name, events,
                             [record](const std::string& departure) {
                                 warn(std::string{record}.append(":").append(departure));
                             });
        print(dongles.back().path().string());
    }
    waitForStop(signals);
    bool departed = false;
    for (ReplayPort& dongle : dongles) {
        const Replay& replay = dongle.finish();
        departed = departed || replay.hasDeparted();
        if (replay.hostIsDone()) {
            print("The host has sent all that the record has of it.");
        } else {
            print("Next line of the record:", replay.nextLine());
        }
    }
    return !departed;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const std::span<const char* const> all{arguments, static_cast<std::size_t>(argumentCount)};
    const SimulatorCommandLine commandLine = readCommandLine(all.subspan(all.empty() ? 0 : 1));
    switch (commandLine.request) {
        case SimulatorCommandLine::Request::help:
            printHelp();
            return success;
        case SimulatorCommandLine::Request::version:
            writeLine(STDOUT_FILENO, "velmorindal-simulator " VELMORINDAL_VERSION);
            return success;
        case SimulatorCommandLine::Request::refused:
            writeLine(STDERR_FILENO,
                      "velmorindal-simulator: " + commandLine.complaint + " " + SimulatorCommandLine::usage);
            return wrongUsage;
        case SimulatorCommandLine::Request::serve:
            break;
    }
    try {
        if (!commandLine.record.empty()) {
            return replayUntilStopped(commandLine.record, commandLine.directory) ? success : failed;
        }
        serveUntilStopped(commandLine.directory);
    } catch (const std::exception& error) {
        writeLine(STDERR_FILENO, std::string{"velmorindal-simulator: "} + error.what());
        return failed;
    }
    return success;
}
