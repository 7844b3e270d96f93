#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "System.h"

namespace velmorindal {

/// A system with one dongle that sends a fixed stream of bytes. Nothing blocks, and the clock stands still
/// until a wait for room fails. After the last byte the dongle is unplugged.
class FuzzedLine final : public System {
  public:
    struct Script {
        std::span<const std::uint8_t> bytes;
        /// The most bytes that a single read gets; 0 for no limit.
        std::size_t pieceSize = 0;
        /// The number of the write, from 1, that goes wrong; 0 for none.
        std::size_t faultyWrite = 0;
        /// How many bytes it takes before there is no more room; -1 for a write that fails.
        std::ptrdiff_t faultyResult = -1;
    };

    explicit FuzzedLine(const Script& script) : script_{script} {}

    /// A directory that contains only the dongle, and the path of the dongle.
    static std::string directory();
    static std::string path();

    const Script& script() const { return script_; }
    /// The bytes given to each write.
    const std::vector<std::vector<std::uint8_t>>& writes() const { return writes_; }

    Clock::time_point now() override { return now_; }
    void sleepFor(Clock::duration /*duration*/) override {}
    int openExclusively(const std::string& path, int accessMode,
                        const std::function<void()>& whenSlow) override;
    std::optional<NodeHolder> holderOf(const std::string& /*path*/) override { return std::nullopt; }
    void endExclusiveUse(int /*descriptor*/) override {}
    void close(int /*descriptor*/) override {}
    std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> buffer) override;
    std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) override;
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override;
    std::optional<std::size_t> linkCount(int descriptor) override;
    bool lineAttributes(int descriptor, termios& attributes) override;
    bool setLineAttributes(int /*descriptor*/, const termios& /*attributes*/) override { return true; }

  private:
    bool isPulledOut() const { return position_ == script_.bytes.size(); }

    Script script_;
    std::size_t position_ = 0;
    std::vector<std::vector<std::uint8_t>> writes_;
    /// A write was taken in part, and there is no room for the rest.
    bool isFull_ = false;
    Clock::time_point now_{};
};

}  // namespace velmorindal
