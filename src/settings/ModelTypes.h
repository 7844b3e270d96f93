#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace velmorindal {

/// Where detected hums go.
enum class OutputPath {
    Switch,       ///< the switch jacks (relays) of the device
    USBKeyboard,  ///< keystrokes over the dongle
    BTKeyboard,   ///< keystrokes over Bluetooth
};

/// How hums select the output.
enum class OutputMode {
    Direct,     ///< every hum drives the one output
    LongShort,  ///< short and long hums drive separate outputs
};

/// The keystrokes that the wizard offers, in its order.
enum class OutputKey {
    Space,
    Enter,
    Tab,
    ShiftTab,
    Num0,
    Num1,
    Num2,
    Num3,
    Num4,
    Tilde1,
    Tilde2,
    Tilde3,
    Tilde4,
    UpArrow,
    DownArrow,
    LeftArrow,
    RightArrow,
    F1,
    F2,
    F3,
    F4,
    F5,
    F6,
    F7,
    F8,
    F9,
    F10,
    F11,
    F12,
};

inline constexpr std::array allOutputPaths{OutputPath::Switch, OutputPath::USBKeyboard,
                                           OutputPath::BTKeyboard};
inline constexpr std::array allOutputModes{OutputMode::Direct, OutputMode::LongShort};

/// The case's name as it is spelled here; an empty text for a value outside the cases.
std::string_view caseName(OutputPath path);
std::string_view caseName(OutputMode mode);
std::string_view caseName(OutputKey key);

/// The keystrokes chosen for each kind of hum.
struct keyList {
    OutputKey directKey = OutputKey::F1;    ///< any hum in Direct mode
    OutputKey shortKey = OutputKey::Space;  ///< a short hum in LongShort mode
    OutputKey longKey = OutputKey::Enter;   ///< a long hum in LongShort mode

    bool operator==(const keyList&) const = default;
};

}  // namespace velmorindal
