#pragma once

#include <optional>

namespace velmorindal {

/// Answers a command line that asks for no window: prints help or the version on standard output, or refuses
/// what is unknown in one line on standard error. Needs no display, and must be called before the
/// QApplication is made.
///
/// @returns the status to end with, or nothing when the window is to be opened.
std::optional<int> answerCommandLine(int argumentCount, char** arguments);

}  // namespace velmorindal
