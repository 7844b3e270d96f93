#pragma once

#include <string>
#include <string_view>

namespace velmorindal {

/// The text of a dialog as one paragraph, for the page.
std::string asReason(std::string_view dialogText);

/// A text of the usual maximum length: pages keep room for it.
inline constexpr std::string_view longReason =
    "Disconnection during writing process. Your changes were not saved. Error code: RC/TC2 Please restart "
    "the Velmorindal in configuration mode and run this program again.";

}  // namespace velmorindal
