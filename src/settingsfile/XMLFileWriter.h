#pragma once

#include <string>

#include "ChosenSettings.h"

namespace velmorindal {

/// Writes `chosen` to the XML file `filename` (UTF-8), which is replaced in one step, and prints the
/// document. A failure is only printed, and an earlier file stays as it was.
void writeXMLFile(const std::string& filename, const ChosenSettings& chosen);

}  // namespace velmorindal
