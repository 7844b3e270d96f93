#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace velmorindal {

/// A process that has a device node open.
struct NodeHolder {
    /// The name of its program, as the system shows it: cut to 15 bytes.
    std::string program;
    pid_t process;

    bool operator==(const NodeHolder&) const = default;
};

/// Who holds the node at `path`: the owner of its lock, otherwise a process that has it open, this one only
/// if there is no other.
///
/// Each platform has its own file for this, chosen by the build. Looks through all processes, which takes
/// some milliseconds.
/// @returns nothing where no process does, or where the system does not show it: the open files of another
///          user's processes are seen by the superuser alone.
std::optional<NodeHolder> findNodeHolder(const std::string& path);

}  // namespace velmorindal
