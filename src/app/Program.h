#pragma once

#include "System.h"

namespace velmorindal {

/// All of the program velmorindal-setup, on the system that `line` stands for: reads the command line, and
/// opens the window unless that is refused or asks for none. To be called once, on the main thread, with what
/// main() was given.
/// @returns the status to end with. Once the window is open, it does not return: the process ends when the
///          person leaves.
int runProgram(int argumentCount, char** arguments, System& line);

}  // namespace velmorindal
