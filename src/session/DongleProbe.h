#pragma once

#include <optional>
#include <string>

#include "SerialSettings.h"
#include "System.h"

namespace velmorindal {

/// The line to a dongle. An answer is waited for two seconds.
inline constexpr SerialSettings dongleLine{.receiveRate = BaudRate::baud115200,
                                           .transmitRate = BaudRate::baud115200,
                                           .minimumBytesToRead = 0,
                                           .timeout = 2};

/// Asks the device behind `path` for its version. Blocks the calling thread for some seconds at most. A
/// candidate that fails before its text could be looked at keeps its descriptor until the process ends.
///
/// @returns the text, or nothing when the candidate has to be skipped; standard error then says why.
std::optional<std::string> versionTextOf(const std::string& path, System& system);

}  // namespace velmorindal
