#pragma once

#include <sys/types.h>

#include <functional>

namespace velmorindal {

/// Starts `work` in a copy of this process, which ends with the status that `work` returns (0 to 255), or by
/// an alarm after five minutes. Do not use EXPECT in there: its result would be lost.
pid_t startChild(const std::function<int()>& work);

/// Waits for the child's end. @returns its status, or minus the signal that ended it.
int waitForChild(pid_t child);

/// Runs `work` in a child to its end.
int inChild(const std::function<int()>& work);

/// Runs `work` in a child that has no more rights than any user, also when the tests run as root.
int asOrdinaryUser(const std::function<int()>& work);

}  // namespace velmorindal
