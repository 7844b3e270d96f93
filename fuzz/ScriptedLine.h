#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace velmorindal {

/// A dongle whose every byte is known beforehand: one pseudo-terminal for the whole process, with the reads
/// and writes of this process on it replaced. Nothing ever waits, and the clock of the deadlines stands
/// still: after the last byte the dongle is pulled out.
///
/// One at a time. What is left open when it goes is closed, so that a run of millions does not run out of
/// descriptors.
class ScriptedLine {
  public:
    struct Script {
        std::span<const std::uint8_t> bytes;
        /// What a single read gets at most; 0 for as much as it asks for.
        std::size_t pieceSize = 0;
        /// The number of the write, from 1, that goes wrong; 0 for none.
        std::size_t faultyWrite = 0;
        /// What the faulty write returns.
        std::ptrdiff_t faultyResult = -1;
    };

    explicit ScriptedLine(const Script& script);
    ScriptedLine(const ScriptedLine&) = delete;
    ScriptedLine& operator=(const ScriptedLine&) = delete;
    ~ScriptedLine();

    /// A directory in which the dongle is the only one.
    static std::string directory();
    static std::string path();

    const Script& script() const { return script_; }
    bool isPulledOut() const { return position_ == script_.bytes.size(); }
    /// Each write as it was asked for.
    const std::vector<std::vector<std::uint8_t>>& writes() const { return writes_; }

    std::ptrdiff_t read(std::span<std::uint8_t> buffer);
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes);

  private:
    Script script_;
    std::size_t position_ = 0;
    std::vector<std::vector<std::uint8_t>> writes_;
    int firstFreeDescriptor_;
};

}  // namespace velmorindal
