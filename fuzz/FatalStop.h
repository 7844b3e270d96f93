#pragma once

namespace velmorindal {

/// Thrown in a fuzz target where the program would stop on purpose, so that a target can distinguish such a
/// stop from a finding. Not a std::exception: only a target may catch it.
struct FatalStop {};

}  // namespace velmorindal
