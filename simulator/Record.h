#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <vector>

#include "ByteBuffer.h"

namespace velmorindal {

/// A line of a record from the wizard, as docs/protocol.md describes it.
struct RecordedEvent {
    enum class Kind { opened, refused, fromHost, fromDevice, closed, lost };

    Kind kind;
    /// Since the start of the record.
    std::chrono::milliseconds time;
    unsigned port;
    /// What was sent; empty except for fromHost and fromDevice.
    ByteBuffer bytes;
    /// The number of the line in the file, from 1.
    std::size_t line;

    bool operator==(const RecordedEvent&) const = default;
};

/// What is wrong with a record, with the name of the file and mostly the number of the line.
class RecordError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads a whole record. Skips empty lines and lines that start with '#'.
///
/// @throws RecordError when the file cannot be read, is not a record, has an invalid line or a time that goes
///         back, or ends within a line.
std::vector<RecordedEvent> readRecord(const std::filesystem::path& file);

/// The events by the number of their port, without ports that were never opened.
std::map<unsigned, std::vector<RecordedEvent>> eventsByPort(const std::vector<RecordedEvent>& events);

}  // namespace velmorindal
