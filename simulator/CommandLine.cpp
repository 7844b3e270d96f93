#include "simulator/CommandLine.h"

#include <string_view>

namespace velmorindal {
namespace {

CommandLine refused(const std::string& complaint) {
    return {.request = CommandLine::Request::refused, .directory = {}, .complaint = complaint};
}

}  // namespace

CommandLine readCommandLine(std::span<const char* const> arguments) {
    CommandLine result;
    bool optionsEnded = false;
    for (const std::string_view argument : arguments) {
        if (!optionsEnded && argument == "--") {
            optionsEnded = true;
        } else if (!optionsEnded && (argument == "--help" || argument == "-h")) {
            result.request = CommandLine::Request::help;
        } else if (!optionsEnded && (argument == "--version" || argument == "-v")) {
            result.request = CommandLine::Request::version;
        } else if (!optionsEnded && argument.starts_with("-")) {
            return refused("Unknown option '" + std::string{argument} + "'.");
        } else if (!result.directory.empty()) {
            return refused("More than one directory.");
        } else {
            result.directory = argument;
        }
    }
    if (result.request == CommandLine::Request::serve && result.directory.empty()) {
        return refused("No directory.");
    }
    return result;
}

}  // namespace velmorindal
