#pragma once

namespace velmorindal {

/// Thrown in a fuzz target where the program would stop on purpose, so that the target can distinguish this
/// from a finding. Not a std::exception: only the target may catch it.
struct FatalStop {};

}  // namespace velmorindal
