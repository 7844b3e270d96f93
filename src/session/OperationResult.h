#pragma once

#include <optional>
#include <string>

namespace velmorindal {

/// How an operation has ended. Reads as whether it succeeded.
///
/// Connecting and loading a settings file can go on together, and both leave their texts in `lastError`: each
/// hands its own to its caller here, whatever the other leaves there.
struct OperationResult {
    bool succeeded = true;
    /// For a person: the reason of a failure, or the warning that a success leaves.
    std::optional<std::string> text = std::nullopt;

    // Implicit on purpose: a caller that only wants to know whether it succeeded has a Boolean.
    operator bool() const { return succeeded; }
};

}  // namespace velmorindal
