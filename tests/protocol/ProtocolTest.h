#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// What `action` writes to standard output.
template <typename Action>
std::string printedBy(Action action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

/// The protocol error that `action` throws, or nothing.
template <typename Action>
std::optional<VelmorindalError> errorOf(Action action) {
    try {
        action();
    } catch (const VelmorindalException& exception) {
        return exception.error;
    }
    return std::nullopt;
}

}  // namespace velmorindal
