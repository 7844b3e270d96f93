#include "Program.h"

#include <QApplication>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <system_error>

#include "ApplicationSetup.h"
#include "CommandLine.h"
#include "DongleSearch.h"
#include "QtDispatch.h"
#include "QuitSignals.h"
#include "RecordingSystem.h"
#include "Wizard.h"

namespace velmorindal {
namespace {

/// Ends the process without destructors: a background thread may still be inside an exchange with the device,
/// and nothing that it uses may be destroyed.
void leave() {
    std::fflush(nullptr);
    std::_Exit(EXIT_SUCCESS);
}

}  // namespace

int runProgram(int argumentCount, char** arguments, System& line) {
    // Standard output may be a pipe whose reader has ended.
    std::signal(SIGPIPE, SIG_IGN);
    // A record may grow to the system's file size limit.
    std::signal(SIGXFSZ, SIG_IGN);
    const CommandLine commandLine = answerCommandLine(argumentCount, arguments);
    if (commandLine.status) {
        return *commandLine.status;
    }
    std::optional<RecordingSystem> recorder;
    if (commandLine.record) {
        try {
            recorder.emplace(line, *commandLine.record);
        } catch (const std::system_error& error) {
            return refuseCommandLine(std::string{error.what()} + '.');
        }
    }
    System& system = recorder ? static_cast<System&>(*recorder) : line;
    // The program does not accept the toolkit's options.
    int count = 1;
    const QApplication application{count, arguments};
    setUpApplication();

    QtDispatch dispatch;
    Wizard wizard{dispatch, system, DongleSearch::fromEnvironment(), QtFilePanel::Kind::native, leave};
    const QuitSignals quitSignals{[&wizard] { wizard.terminate(); }};
    wizard.applicationDidFinishLaunching();
    QApplication::exec();
    // Only terminate() ends the program, even if the desktop has stopped the event loop.
    wizard.terminate();
    return EXIT_SUCCESS;
}

}  // namespace velmorindal
