#pragma once

#include <string_view>

namespace velmorindal {

/// The state of the session with the device. `idle` lasts until the first attempt has found a dongle
/// or failed.
enum class ConnectionStatus { idle, connecting, connected, disconnected, writing, error };

/// Which calibration measurement is running.
enum class PollingState { none, clarity, duration };

/// The case's name as it is spelled here; an empty text for a value outside the cases.
std::string_view caseName(ConnectionStatus status);
std::string_view caseName(PollingState state);

}  // namespace velmorindal
