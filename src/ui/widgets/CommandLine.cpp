#include "ui/widgets/CommandLine.h"

#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdlib>
#include <string>

#include "diagnostics/Print.h"

namespace velmorindal {
namespace {

constexpr int wrongUsage = 2;

int refuse(const QString& complaint) {
    const QString line =
        QStringLiteral("velmorindal-setup: %1 Usage: velmorindal-setup [--help | --version]").arg(complaint);
    writeLine(STDERR_FILENO, line.toStdString());
    return wrongUsage;
}

}  // namespace

std::optional<int> answerCommandLine(int argumentCount, char** arguments) {
    if (argumentCount <= 1) {
        return std::nullopt;
    }
    const QCoreApplication application{argumentCount, arguments};
    const QCommandLineOption help{{"h", "help"}, "Print this help and exit."};
    const QCommandLineOption version{{"v", "version"}, "Print the version and exit."};
    QCommandLineParser parser;
    parser.setApplicationDescription("Sets up a Velmorindal, an assistive switch, over its USB dongle.");
    parser.addOptions({help, version});
    if (!parser.parse(QCoreApplication::arguments())) {
        return refuse(parser.errorText() + (parser.errorText().endsWith('.') ? "" : "."));
    }
    if (const QStringList unknown = parser.positionalArguments(); !unknown.isEmpty()) {
        return refuse(QStringLiteral("Unknown argument '%1'.").arg(unknown.front()));
    }
    if (parser.isSet(help)) {
        writeLine(STDOUT_FILENO, parser.helpText().trimmed().toStdString());
        return EXIT_SUCCESS;
    }
    if (parser.isSet(version)) {
        writeLine(STDOUT_FILENO, "velmorindal-setup " VELMORINDAL_VERSION);
        return EXIT_SUCCESS;
    }
    return std::nullopt;
}

}  // namespace velmorindal
