#pragma once

#include <mutex>
#include <set>

#include "transport/System.h"

namespace velmorindal {

/// The operating system itself.
class PosixSystem : public System {
  public:
    /// Starts to close, on other threads, whatever was opened here, is still open and has output that the
    /// device has not taken. For the end of the process, which would wait for that output otherwise: reads
    /// and writes that are under way may find the descriptor closed.
    void closeBeforeTheEnd();

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

  private:
    std::mutex mutex_;
    std::set<int> open_;
};

}  // namespace velmorindal
