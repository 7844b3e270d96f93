#pragma once

#include <string>
#include <vector>

namespace velmorindal {

/// Where to look for dongles.
struct DongleSearch {
    std::string directory = "/dev/";
    /// The start of the name of a dongle's entry, relative to the directory.
    std::string prefix = "cu.usbmodem";

    /// The defaults, overridden by VELMORINDAL_DEVICE_DIRECTORY and VELMORINDAL_DEVICE_PREFIX where these are
    /// set and not empty.
    static DongleSearch fromEnvironment();

    /// The full paths of the matching entries, sub-directories included, in the order of the directory walk.
    /// Links are listed, not followed. What cannot be read is skipped. From any thread.
    std::vector<std::string> candidates() const;
};

}  // namespace velmorindal
