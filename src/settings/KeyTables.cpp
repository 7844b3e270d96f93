#include "KeyTables.h"

#include <array>

namespace velmorindal {
namespace {

struct KeyRow {
    OutputKey key;
    std::string_view name;
    const char* displayString;
    std::uint32_t code;
};

// Codes: modifier, key, modifier, key. 0x02 is the left Shift. The Tilde keys are two keystrokes, Shift with
// the grave accent, then the digit; the meaning of 0x80 before the digit is up to the device.
constexpr std::array keyRows{
    KeyRow{OutputKey::Space, "Space", "Space", 0x002C0000},
    KeyRow{OutputKey::Enter, "Enter", "Enter", 0x00280000},
    KeyRow{OutputKey::Tab, "Tab", "Tab", 0x002B0000},
    KeyRow{OutputKey::ShiftTab, "ShiftTab", "Shift+Tab", 0x022B0000},
    KeyRow{OutputKey::Num0, "Num0", "0", 0x00270000},
    KeyRow{OutputKey::Num1, "Num1", "1", 0x001E0000},
    KeyRow{OutputKey::Num2, "Num2", "2", 0x001F0000},
    KeyRow{OutputKey::Num3, "Num3", "3", 0x00200000},
    KeyRow{OutputKey::Num4, "Num4", "4", 0x00210000},
    KeyRow{OutputKey::Tilde1, "Tilde1", "~1", 0x0235801E},
    KeyRow{OutputKey::Tilde2, "Tilde2", "~2", 0x0235801F},
    KeyRow{OutputKey::Tilde3, "Tilde3", "~3", 0x02358020},
    KeyRow{OutputKey::Tilde4, "Tilde4", "~4", 0x02358021},
    KeyRow{OutputKey::UpArrow, "UpArrow", "[Up Arrow]", 0x00520000},
    KeyRow{OutputKey::DownArrow, "DownArrow", "[Down Arrow]", 0x00510000},
    KeyRow{OutputKey::LeftArrow, "LeftArrow", "[Left Arrow]", 0x00500000},
    KeyRow{OutputKey::RightArrow, "RightArrow", "[Right Arrow]", 0x004F0000},
    KeyRow{OutputKey::F1, "F1", "F1", 0x003A0000},
    KeyRow{OutputKey::F2, "F2", "F2", 0x003B0000},
    KeyRow{OutputKey::F3, "F3", "F3", 0x003C0000},
    KeyRow{OutputKey::F4, "F4", "F4", 0x003D0000},
    KeyRow{OutputKey::F5, "F5", "F5", 0x003E0000},
    KeyRow{OutputKey::F6, "F6", "F6", 0x003F0000},
    KeyRow{OutputKey::F7, "F7", "F7", 0x00400000},
    KeyRow{OutputKey::F8, "F8", "F8", 0x00410000},
    KeyRow{OutputKey::F9, "F9", "F9", 0x00420000},
    KeyRow{OutputKey::F10, "F10", "F10", 0x00430000},
    KeyRow{OutputKey::F11, "F11", "F11", 0x00440000},
    KeyRow{OutputKey::F12, "F12", "F12", 0x00450000},
};

constexpr bool standInKeyOrder() {
    for (std::size_t index = 0; index < keyRows.size(); ++index) {
        if (static_cast<std::size_t>(keyRows[index].key) != index) {
            return false;
        }
    }
    return true;
}
static_assert(standInKeyOrder());

}  // namespace

std::string_view caseName(OutputKey key) {
    const auto row = static_cast<std::size_t>(key);
    return row < keyRows.size() ? keyRows[row].name : std::string_view{};
}

const std::map<OutputKey, std::string>& keyDisplayStrings() {
    static const auto table = [] {
        std::map<OutputKey, std::string> strings;
        for (const KeyRow& row : keyRows) {
            strings.emplace(row.key, row.displayString);
        }
        return strings;
    }();
    return table;
}

const std::vector<OutputKey>& keyDisplayOrder() {
    static const auto table = [] {
        std::vector<OutputKey> order;
        order.reserve(keyRows.size());
        for (const KeyRow& row : keyRows) {
            order.push_back(row.key);
        }
        return order;
    }();
    return table;
}

const std::map<OutputKey, std::uint32_t>& keyCodes() {
    static const auto table = [] {
        std::map<OutputKey, std::uint32_t> codes;
        for (const KeyRow& row : keyRows) {
            codes.emplace(row.key, row.code);
        }
        return codes;
    }();
    return table;
}

std::vector<OutputKey> keysWithCode(std::uint32_t code) {
    std::vector<OutputKey> keys;
    for (const KeyRow& row : keyRows) {
        if (row.code == code) {
            keys.push_back(row.key);
        }
    }
    return keys;
}

}  // namespace velmorindal
