#pragma once

#include <string>

#include "VelmorindalXML.h"

namespace velmorindal {

enum class ParseOutcome {
    parsed,      ///< well formed to its end
    unreadable,  ///< not a regular file, or it cannot be opened or read
    malformed,   ///< not well formed, or with a part larger than any settings file has
};

/// Parses the XML file `filename` (UTF-8) and reports each start element to `delegate` as it comes, also when
/// the file proves malformed later on.
///
/// Never waits for a pipe or a device, and touches no other file and no network: external entities stay
/// unresolved. Takes constant memory, whatever the file holds. For that, these count as malformed: a text,
/// comment, tag or document type of more than 64 KiB (white space of any length is fine, but not in the
/// encodings of two or four bytes a character), elements nested more than 256 deep, and an entity that
/// expands to more than 128 characters.
ParseOutcome parseXMLFile(const std::string& filename, VelmorindalXML& delegate);

}  // namespace velmorindal
