#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ModelTypes.h"

namespace velmorindal {

/// The text for a key, in the lists of the wizard and in the settings file.
const std::map<OutputKey, std::string>& keyDisplayStrings();
/// All keys, in the order of the wizard's lists.
const std::vector<OutputKey>& keyDisplayOrder();
/// Two keystrokes packed as modifier, key, modifier, key, most significant byte first; the keys are USB HID
/// usage IDs. A single keystroke leaves the second pair zero.
const std::map<OutputKey, std::uint32_t>& keyCodes();
/// Every key whose code is `code`, in key order.
std::vector<OutputKey> keysWithCode(std::uint32_t code);

}  // namespace velmorindal
