#include "ModelTypes.h"

#include <array>
#include <string_view>

#include "CaseNames.h"

namespace velmorindal {

std::string_view caseName(OutputPath path) {
    static constexpr std::array<std::string_view, 3> names{"Switch", "USBKeyboard", "BTKeyboard"};
    return nameAt(path, names);
}

std::string_view caseName(OutputMode mode) {
    static constexpr std::array<std::string_view, 2> names{"Direct", "LongShort"};
    return nameAt(mode, names);
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
