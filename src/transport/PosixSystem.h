#pragma once

#include "System.h"

namespace velmorindal {

/// The operating system itself. It has no state: all objects are equivalent.
class PosixSystem : public System {
  public:
    Clock::time_point now() override;
    void sleepFor(Clock::duration duration) override;
    int openExclusively(const std::string& path, int accessMode,
                        const std::function<void()>& whenSlow) override;
    std::optional<NodeHolder> holderOf(const std::string& path) override;
    void endExclusiveUse(int descriptor) override;
    void close(int descriptor) override;
    std::ptrdiff_t read(int descriptor, std::span<std::uint8_t> buffer) override;
    std::ptrdiff_t write(int descriptor, std::span<const std::uint8_t> bytes) override;
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override;
    std::optional<std::size_t> linkCount(int descriptor) override;
    bool lineAttributes(int descriptor, termios& attributes) override;
    bool setLineAttributes(int descriptor, const termios& attributes) override;
};

}  // namespace velmorindal
