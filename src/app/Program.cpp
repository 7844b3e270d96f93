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

/// Ends the process where it stands. A background thread may still be inside an exchange with the device, and
/// nothing that it touches may be destroyed under it.
void leave() {
    std::fflush(nullptr);
    std::_Exit(EXIT_SUCCESS);
}

}  // namespace

int runProgram(int argumentCount, char** arguments, System& line) {
    // Standard output may be a pipe whose reader has gone.
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
    // The toolkit's options are not options of this program.
    int count = 1;
    const QApplication application{count, arguments};
    setUpApplication();

    QtDispatch dispatch;
    Wizard wizard{dispatch, system, DongleSearch::fromEnvironment(), QtFilePanel::Kind::native, leave};
    const QuitSignals quitSignals{[&wizard] { wizard.terminate(); }};
    wizard.applicationDidFinishLaunching();
    QApplication::exec();
    // Nothing but terminate() ends the program, also where the desktop has stopped the event loop.
    wizard.terminate();
    return EXIT_SUCCESS;
}

}  // namespace velmorindal
