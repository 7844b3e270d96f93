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

}  // namespace velmorindal
