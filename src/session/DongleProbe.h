#pragma once

#include <optional>
#include <string>

#include "SerialSettings.h"
#include "System.h"

namespace velmorindal {

/// The settings of the line to a dongle, with a deadline of two seconds for an answer.
inline constexpr SerialSettings dongleLine{.receiveRate = BaudRate::baud115200,
                                           .transmitRate = BaudRate::baud115200,
                                           .minimumBytesToRead = 0,
                                           .timeout = 2};

/// Asks the device at `path` for its version. Blocks the calling thread for a few seconds, or for up to half
/// a minute more while another process is closing the port. The port of a candidate that fails before its
/// text could be checked stays open until the process ends.
///
/// @returns the text, or nothing when the candidate must be skipped; standard error then says why.
std::optional<std::string> versionTextOf(const std::string& path, System& system);

}  // namespace velmorindal
