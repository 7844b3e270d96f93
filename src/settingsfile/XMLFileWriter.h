#pragma once

#include <string>

#include "ChosenSettings.h"

namespace velmorindal {

/// Writes `chosen` to the XML file `filename` (UTF-8), which is replaced in one step, and prints what is
/// written. A failure is printed too, and an earlier file stays as it was.
void writeXMLFile(const std::string& filename, const ChosenSettings& chosen);

}  // namespace velmorindal
