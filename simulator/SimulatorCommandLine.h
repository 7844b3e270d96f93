#pragma once

#include <span>
#include <string>

namespace velmorindal {

/// What the command line of the simulator asks for.
struct SimulatorCommandLine {
    enum class Request { serve, help, version, refused };

    Request request = Request::serve;
    /// Where to make the port; for `serve`.
    std::string directory = {};
    /// What to play again there; empty where the device is simulated.
    std::string record = {};
    /// What was wrong; for `refused`.
    std::string complaint = {};

    static constexpr const char* usage =
        "Usage: velmorindal-simulator [--help | --version | [--replay FILE] DIRECTORY]";
};

/// `arguments` without the program's name. After "--" every argument is a directory.
SimulatorCommandLine readCommandLine(std::span<const char* const> arguments);

}  // namespace velmorindal
