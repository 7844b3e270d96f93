#pragma once

#include <string_view>

namespace velmorindal {

/// Ends the process with the sentence, in a way that a fuzzer records as a finding, unless it `holds`.
void require(bool holds, std::string_view sentence);

/// The same for two texts that have to agree; shows both.
void requireEqual(std::string_view found, std::string_view expected, std::string_view sentence);

}  // namespace velmorindal
