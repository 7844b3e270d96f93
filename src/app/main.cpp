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
#include "PosixSystem.h"
#include "QtDispatch.h"
#include "QuitSignals.h"
#include "RecordingSystem.h"
#include "Wizard.h"

namespace {

/// Ends the process where it stands. A background thread may still be inside an exchange with the device, and
/// nothing that it touches may be destroyed under it.
void leave() {
    std::fflush(nullptr);
    std::_Exit(EXIT_SUCCESS);
}

}  // namespace

int main(int argc, char** argv) {
    // Standard output may be a pipe whose reader has gone.
    std::signal(SIGPIPE, SIG_IGN);
    // A record may grow to the system's file size limit.
    std::signal(SIGXFSZ, SIG_IGN);
    const velmorindal::CommandLine commandLine = velmorindal::answerCommandLine(argc, argv);
    if (commandLine.status) {
        return *commandLine.status;
    }
    velmorindal::PosixSystem line;
    std::optional<velmorindal::RecordingSystem> recorder;
    if (commandLine.record) {
        try {
            recorder.emplace(line, *commandLine.record);
        } catch (const std::system_error& error) {
            return velmorindal::refuseCommandLine(std::string{error.what()} + '.');
        }
    }
    velmorindal::System& system = recorder ? static_cast<velmorindal::System&>(*recorder) : line;
    // The toolkit's options are not options of this program.
    int argumentCount = 1;
    const QApplication application{argumentCount, argv};
    velmorindal::setUpApplication();

    velmorindal::QtDispatch dispatch;
    velmorindal::Wizard wizard{dispatch, system, velmorindal::DongleSearch::fromEnvironment(),
                               velmorindal::QtFilePanel::Kind::native, leave};
    const velmorindal::QuitSignals quitSignals{[&wizard] { wizard.terminate(); }};
    wizard.applicationDidFinishLaunching();
    QApplication::exec();
    // Nothing but terminate() ends the program, also where the desktop has stopped the event loop.
    wizard.terminate();
}
