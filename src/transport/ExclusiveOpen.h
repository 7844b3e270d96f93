#pragma once

#include <string>

namespace velmorindal {

/// Opens `path` so that nobody else can hold it at the same time. Never becomes the controlling terminal of
/// the process.
///
/// Each platform has its own file for this, chosen by the build.
/// @param accessMode O_RDWR, O_RDONLY or O_WRONLY.
/// @returns the descriptor, or -1 when the system refuses or somebody else holds the node; nothing is left
///          open then.
int openExclusively(const std::string& path, int accessMode);

/// Gives up of the exclusive use what would outlive the descriptor. The descriptor stays open.
void endExclusiveUse(int descriptor);

}  // namespace velmorindal
