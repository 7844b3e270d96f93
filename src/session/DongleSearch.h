#pragma once

#include <string>

namespace velmorindal {

/// Where dongles are looked for.
struct DongleSearch {
    std::string directory = "/dev/";
    /// What the name of an entry, relative to the directory, starts with.
    std::string prefix = "cu.usbmodem";

    /// The defaults, overridden by VELMORINDAL_DEVICE_DIRECTORY and VELMORINDAL_DEVICE_PREFIX where these are
    /// set.
    static DongleSearch fromEnvironment();
};

}  // namespace velmorindal
