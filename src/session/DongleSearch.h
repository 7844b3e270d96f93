#pragma once

#include <string>
#include <vector>

namespace velmorindal {

/// Where dongles are looked for.
struct DongleSearch {
    std::string directory = "/dev/";
    /// What the name of an entry, relative to the directory, starts with.
    std::string prefix = "cu.usbmodem";

    /// The defaults, overridden by VELMORINDAL_DEVICE_DIRECTORY and VELMORINDAL_DEVICE_PREFIX where these are
    /// set and not empty.
    static DongleSearch fromEnvironment();

    /// The full paths of the matching entries, sub-directories included, in the order in which the directory
    /// walk meets them. Links are listed, not followed. What cannot be read is passed over.
    std::vector<std::string> candidates() const;
};

}  // namespace velmorindal
