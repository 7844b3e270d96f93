#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmorindal {

/// What the command line of the wizard asks for.
struct CommandLine {
    /// The exit status for a command line that is refused.
    static constexpr int wrongUsage = 2;

    /// The status to end with; nothing when the window is to be opened.
    std::optional<int> status;
    /// The file to record the line in, in the system's encoding; nothing when it is not recorded.
    std::optional<std::string> record;
};

/// Reads the command line, and answers one that asks for no window: prints help or the version on standard
/// output, or refuses an unknown argument in one line on standard error. Needs no display, and must be called
/// before the QApplication is made.
CommandLine answerCommandLine(int argumentCount, char** arguments);

/// Says in one line on standard error what is wrong with the command line.
/// @returns the status to end with.
int refuseCommandLine(std::string_view complaint);

}  // namespace velmorindal
