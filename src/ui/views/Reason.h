#pragma once

#include <string>
#include <string_view>

namespace velmorindal {

/// The text of a dialog as one paragraph, for the page.
std::string asReason(std::string_view dialogText);

/// The longest reason that a page shows: pages keep room for it.
inline constexpr std::string_view longReason =
    "The Velmorindal is not connected, or the connection has been lost. Please ensure your device is "
    "connected and run this program again. Please restart the Velmorindal in configuration mode and run this "
    "program again.";

}  // namespace velmorindal
