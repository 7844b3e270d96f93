#include "CommandLine.h"

#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <cstdlib>
#include <string>

#include "Print.h"

namespace velmorindal {
namespace {

CommandLine endingWith(int status) {
    return {.status = status, .record = {}};
}

CommandLine refused(const QString& complaint) {
    return endingWith(refuseCommandLine(complaint.toStdString()));
}

}  // namespace

int refuseCommandLine(std::string_view complaint) {
    writeLine(STDERR_FILENO, "velmorindal-setup: " + std::string{complaint} +
                                 " Usage: velmorindal-setup [--help | --version | --record FILE]");
    return CommandLine::wrongUsage;
}

CommandLine answerCommandLine(int argumentCount, char** arguments) {
    if (argumentCount <= 1) {
        return {};
    }
    const QCoreApplication application{argumentCount, arguments};
    const QCommandLineOption help{{"h", "help"}, "Print this help and exit."};
    const QCommandLineOption version{{"v", "version"}, "Print the version and exit."};
    const QCommandLineOption record{
        "record", "Write all that passes over the line to the dongle to FILE, which is replaced.", "FILE"};
    QCommandLineParser parser;
    parser.setApplicationDescription("Sets up a Velmorindal, an assistive switch, over its USB dongle.");
    parser.addOptions({help, version, record});
    if (!parser.parse(QCoreApplication::arguments())) {
        return refused(parser.errorText());
    }
    if (const QStringList unknown = parser.positionalArguments(); !unknown.isEmpty()) {
        return refused(QStringLiteral("Unknown argument '%1'.").arg(unknown.front()));
    }
    if (parser.isSet(help)) {
        writeLine(STDOUT_FILENO, parser.helpText().trimmed().toStdString());
        return endingWith(EXIT_SUCCESS);
    }
    if (parser.isSet(version)) {
        writeLine(STDOUT_FILENO, "velmorindal-setup " VELMORINDAL_VERSION);
        return endingWith(EXIT_SUCCESS);
    }
    if (parser.values(record).size() > 1) {
        return refused("More than one record.");
    }
    if (!parser.isSet(record)) {
        return {};
    }
    return {.status = {}, .record = QFile::encodeName(parser.value(record)).toStdString()};
}

}  // namespace velmorindal
