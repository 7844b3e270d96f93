#include "SessionStates.h"

#include <array>

#include "CaseNames.h"

namespace velmorindal {

std::string_view caseName(ConnectionStatus status) {
    static constexpr std::array<std::string_view, 6> names{"idle",         "connecting", "connected",
                                                           "disconnected", "writing",    "error"};
    return nameAt(status, names);
}

std::string_view caseName(PollingState state) {
    static constexpr std::array<std::string_view, 3> names{"none", "clarity", "duration"};
    return nameAt(state, names);
}

}  // namespace velmorindal
