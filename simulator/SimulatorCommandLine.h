#pragma once

#include <span>
#include <string>

namespace velmorindal {

/// What the command line of the simulator asks for.
struct SimulatorCommandLine {
    enum class Request { serve, help, version, refused };

    Request request = Request::serve;
    /// Where to create the port; for `serve`.
    std::string directory = {};
    /// The record to replay; empty for a simulated device.
    std::string record = {};
    /// What was wrong; for `refused`.
    std::string complaint = {};

    static constexpr const char* usage =
        "Usage: velmorindal-simulator [--help | --version | [--replay FILE] DIRECTORY]";
};

/// Reads the command line. `arguments` does not include the program's name. After "--" every argument is
/// a directory.
SimulatorCommandLine readCommandLine(std::span<const char* const> arguments);

}  // namespace velmorindal
