#include "SimulatorCommandLine.h"

#include <string_view>
#include <utility>

namespace velmorindal {
namespace {

SimulatorCommandLine refused(const std::string& complaint) {
    return {.request = SimulatorCommandLine::Request::refused, .complaint = complaint};
}

}  // namespace

SimulatorCommandLine readCommandLine(std::span<const char* const> arguments) {
    SimulatorCommandLine result;
    bool optionsEnded = false;
    int records = 0;
    bool recordFollows = false;
    for (const std::string_view argument : arguments) {
        if (std::exchange(recordFollows, false)) {
            result.record = argument;
        } else if (!optionsEnded && argument == "--replay") {
            recordFollows = true;
            ++records;
        } else if (!optionsEnded && argument.starts_with("--replay=")) {
            ++records;
            result.record = argument.substr(argument.find('=') + 1);
        } else if (!optionsEnded && argument == "--") {
            optionsEnded = true;
        } else if (!optionsEnded && (argument == "--help" || argument == "-h")) {
            result.request = SimulatorCommandLine::Request::help;
        } else if (!optionsEnded && (argument == "--version" || argument == "-v")) {
            result.request = SimulatorCommandLine::Request::version;
        } else if (!optionsEnded && argument.starts_with("-")) {
            return refused("Unknown option '" + std::string{argument} + "'.");
        } else if (!result.directory.empty()) {
            return refused("More than one directory.");
        } else {
            result.directory = argument;
        }
    }
    if (records > 1) {
        return refused("More than one record.");
    }
    if (records > 0 && result.record.empty()) {
        return refused("No record after '--replay'.");
    }
    if (result.request == SimulatorCommandLine::Request::serve && result.directory.empty()) {
        return refused("No directory.");
    }
    return result;
}

}  // namespace velmorindal
