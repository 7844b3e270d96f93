#pragma once

namespace velmorindal {

/// Thrown in a fuzz target where the program would stop on purpose, so that a target can tell such a stop
/// from a finding. No std::exception: nothing but a target is to catch it.
struct FatalStop {};

}  // namespace velmorindal
