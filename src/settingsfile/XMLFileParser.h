#pragma once

#include <string>

#include "VelmorindalXML.h"

namespace velmorindal {

/// How parsing a file has ended.
enum class ParseOutcome {
    parsed,      ///< well formed up to its end
    unreadable,  ///< not a regular file, or it cannot be opened or read
    malformed,   ///< not well formed, or with a part larger than any settings file has
};

/// Parses the XML file `filename` (UTF-8) and reports each start element to `delegate` at once, so also those
/// before an error in the file.
///
/// Never waits for a pipe or a device, and uses no other file and no network: external entities are not
/// resolved. The memory used does not depend on the file. So these count as malformed: a text, comment, tag
/// or document type of more than 64 KiB (except white space, unless the encoding has two or four bytes a
/// character), elements nested more than 256 deep, and an entity that expands to more than 128 characters.
ParseOutcome parseXMLFile(const std::string& filename, VelmorindalXML& delegate);

}  // namespace velmorindal
