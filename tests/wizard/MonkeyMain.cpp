#include <QApplication>
#include <QStandardPaths>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>

#include "ApplicationSetup.h"
#include "Monkey.h"
#include "Print.h"

namespace {

/// Standard output is the wizard's.
void say(const std::string& line) {
    velmorindal::writeLine(2, line);
}

/// Drops a warning that the platform without a screen prints for every window.
void passOn(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& message) {
    if (!message.startsWith(QLatin1String{"This plugin does not support"})) {
        say(message.toStdString());
    }
}

constexpr std::uint64_t stepsBetweenReports = 10'000;

/// @returns whether all steps went well.
bool run(std::uint64_t steps, std::uint64_t seed) {
    velmorindal::Monkey monkey{seed};
    try {
        while (monkey.stepsDone() < steps) {
            monkey.step();
            if (monkey.stepsDone() % stepsBetweenReports == 0 && monkey.stepsDone() < steps) {
                say("Monkey: so far " + monkey.summary());
            }
        }
    } catch (const std::exception& exception) {
        say(monkey.failure(exception.what()));
        return false;
    }
    say("Monkey: " + monkey.summary());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        say("usage: velmorindal-monkey STEPS SEED");
        return 2;
    }
    const std::uint64_t steps = std::strtoull(argv[1], nullptr, 10);
    const std::uint64_t seed = std::strtoull(argv[2], nullptr, 10);
    std::signal(SIGPIPE, SIG_IGN);
    qInstallMessageHandler(passOn);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    int argumentCount = 1;
    const QApplication application{argumentCount, argv};
    velmorindal::setUpApplication();
    return run(steps, seed) ? EXIT_SUCCESS : EXIT_FAILURE;
}
