#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "System.h"

namespace velmorindal {

/// A system with one dongle whose every byte is known beforehand. Nothing ever waits, and the clock stands
/// still until a wait for room is in vain. After the last byte the dongle is pulled out.
class FuzzedLine final : public System {
  public:
    struct Script {
        std::span<const std::uint8_t> bytes;
        /// What a single read gets at most; 0 for as much as it asks for.
        std::size_t pieceSize = 0;
        /// The number of the frame, from 1, whose write goes wrong; 0 for none.
        std::size_t faultyWrite = 0;
        /// How many bytes of it are taken before the write fails; below 1 for none.
        std::ptrdiff_t faultyResult = -1;
    };

    explicit FuzzedLine(const Script& script) : script_{script} {}

    /// A directory in which the dongle is the only one.
    static std::string directory();
    static std::string path();

    const Script& script() const { return script_; }
    /// Each frame as it was asked to be written.
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
    /// A frame was taken in part, and there is no room for the rest.
    bool isFull_ = false;
    Clock::time_point now_{};
};

}  // namespace velmorindal
