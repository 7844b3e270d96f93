#pragma once

#include <string>

namespace velmorindal {

/// Opens `path` so that no other process can hold it at the same time, and stops the echo of a line. The line
/// does not become the controlling terminal of the process. From any thread.
///
/// Each platform has its own file for this, chosen by the build.
/// @param accessMode O_RDWR, O_RDONLY or O_WRONLY.
/// @returns the non-blocking descriptor, or -1 with the reason in `errno` (EBUSY when another process holds
///          the node) and nothing left open.
int openExclusively(const std::string& path, int accessMode);

/// Ends the part of the exclusive use that would outlive the descriptor. The descriptor stays open.
void endExclusiveUse(int descriptor);

}  // namespace velmorindal
