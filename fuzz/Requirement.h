#pragma once

#include <string_view>

namespace velmorindal {

/// Unless it `holds`, prints `sentence` and aborts, which a fuzzer records as a finding.
void require(bool holds, std::string_view sentence);

/// The same for two texts that must be equal; prints both.
void requireEqual(std::string_view found, std::string_view expected, std::string_view sentence);

}  // namespace velmorindal
