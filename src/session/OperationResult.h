#pragma once

#include <optional>
#include <string>

namespace velmorindal {

/// How an operation has ended. Converts to whether it succeeded.
///
/// Connecting and loading a settings file can run at the same time, and both write to `lastError`. So each
/// also returns its text here.
struct OperationResult {
    bool succeeded = true;
    /// For a person: the reason of a failure, or the warning that a success leaves.
    std::optional<std::string> text = std::nullopt;

    // Implicit on purpose: many callers only ask whether it succeeded.
    operator bool() const { return succeeded; }
};

}  // namespace velmorindal
