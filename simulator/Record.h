#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <vector>

#include "ByteBuffer.h"

namespace velmorindal {

/// A line of a record that the wizard has made, as docs/protocol.md has it.
struct RecordedEvent {
    enum class Kind { opened, refused, fromHost, fromDevice, closed, lost };

    Kind kind;
    /// Since the start of the record.
    std::chrono::milliseconds time;
    unsigned port;
    /// What was sent; empty but for the two kinds that send.
    ByteBuffer bytes;
    /// Of the file, from 1.
    std::size_t line;

    bool operator==(const RecordedEvent&) const = default;
};

/// What is wrong with a record, with its name and the number of the line.
class RecordError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads a whole record. Empty lines and lines that start with '#' are passed over.
///
/// @throws RecordError when the file cannot be read, is no record, holds a line that is none of a record, or
///         ends within a line.
std::vector<RecordedEvent> readRecord(const std::filesystem::path& file);

/// The events of each port that was opened, by its number.
std::map<unsigned, std::vector<RecordedEvent>> eventsByPort(const std::vector<RecordedEvent>& events);

}  // namespace velmorindal
