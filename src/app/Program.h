#pragma once

#include "System.h"

namespace velmorindal {

/// All of the program velmorindal-setup, with `line` as its system: reads the command line, and opens the
/// window unless that is refused or asks for none. Call it once, on the main thread, with the arguments
/// of main().
/// @returns the status to end with. Once the window is open, it does not return: the process ends when the
///          user quits.
int runProgram(int argumentCount, char** arguments, System& line);

}  // namespace velmorindal
