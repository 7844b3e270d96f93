#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

#include "FrameOracle.h"
#include "OwnedDescriptor.h"
#include "VelmorindalCommand.h"

namespace velmorindal {

/// A host without a protocol: it opens the port and moves bytes.
class RawHost {
  public:
    /// Longer than anything takes even on a busy machine; a test that waits this long has failed.
    static constexpr std::chrono::minutes patience{2};

    /// @throws std::system_error when the port cannot be opened.
    explicit RawHost(const std::filesystem::path& port);

    void write(std::span<const std::uint8_t> bytes) const;
    /// The next `length` bytes, fewer only where the port ended or patience did.
    ByteBuffer read(std::size_t length) const;
    ByteBuffer ask(const ByteBuffer& request, std::size_t answerLength) const {
        write(request);
        return read(answerLength);
    }
    /// Reads until the port ends. @returns false when patience ended first.
    bool sawTheEnd() const;
    unsigned long linkCount() const;
    /// Waits until the node has lost its link, which comes a moment after the port has ended. @returns false
    /// when patience ended first.
    bool sawTheNodeVanish() const;
    int descriptor() const { return port_.get(); }

  private:
    /// One read; empty at the end of the port or of patience.
    ByteBuffer readSome(std::size_t length, std::chrono::steady_clock::time_point deadline) const;

    OwnedDescriptor port_;
};

using oracle::frame;
using oracle::query;

/// One after the other.
ByteBuffer operator+(ByteBuffer first, const ByteBuffer& second);

}  // namespace velmorindal
