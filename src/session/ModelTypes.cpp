#include "session/ModelTypes.h"

#include <cstddef>
#include <span>

namespace velmorindal {
namespace {

template <typename Enumeration>
std::string_view nameAt(Enumeration value, std::span<const std::string_view> names) {
    const auto ordinal = static_cast<std::size_t>(value);
    return ordinal < names.size() ? names[ordinal] : std::string_view{};
}

}  // namespace

std::string_view caseName(OutputPath path) {
    static constexpr std::array<std::string_view, 3> names{"Switch", "USBKeyboard", "BTKeyboard"};
    return nameAt(path, names);
}

std::string_view caseName(OutputMode mode) {
    static constexpr std::array<std::string_view, 2> names{"Direct", "LongShort"};
    return nameAt(mode, names);
}

std::string_view caseName(ConnectionStatus status) {
    static constexpr std::array<std::string_view, 6> names{"idle",         "connecting", "connected",
                                                           "disconnected", "writing",    "error"};
    return nameAt(status, names);
}

std::string_view caseName(PollingState state) {
    static constexpr std::array<std::string_view, 3> names{"none", "clarity", "duration"};
    return nameAt(state, names);
}

std::string_view caseName(OutputKey key) {
    static constexpr std::array<std::string_view, 29> names{
        "Space",      "Enter",  "Tab",    "ShiftTab", "Num0",   "Num1",    "Num2",      "Num3",
        "Num4",       "Tilde1", "Tilde2", "Tilde3",   "Tilde4", "UpArrow", "DownArrow", "LeftArrow",
        "RightArrow", "F1",     "F2",     "F3",       "F4",     "F5",      "F6",        "F7",
        "F8",         "F9",     "F10",    "F11",      "F12"};
    return nameAt(key, names);
}

}  // namespace velmorindal
