#pragma once

#include <string_view>

namespace velmorindal {

/// Writes `message` and a newline to standard error as one write, then aborts the process.
///
/// For conversions that fail only if the program or the device has an error: going on could put a wrong byte
/// on the wire. Safe from any thread.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace velmorindal
