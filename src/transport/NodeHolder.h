#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace velmorindal {

/// A process that has a device node open.
struct NodeHolder {
    /// The name of its program: the whole name if its command line has it, otherwise the first 15 bytes.
    std::string program;
    pid_t process;

    bool operator==(const NodeHolder&) const = default;
};

/// The process that holds the node at `path`: the owner of its lock, otherwise one that has it open; this
/// process only if there is no other.
///
/// Each platform has its own file for this, chosen by the build. Looks through all processes, which takes
/// some milliseconds. From any thread.
/// @returns nothing when no process holds it, or when the system does not show it: only the superuser sees
///          the open files of another user's processes.
std::optional<NodeHolder> findNodeHolder(const std::string& path);

}  // namespace velmorindal
