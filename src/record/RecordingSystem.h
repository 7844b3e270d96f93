#pragma once

#include <map>
#include <string>

#include "LineRecord.h"
#include "Mutex.h"
#include "System.h"

namespace velmorindal {

/// Passes all calls to another system and records its ports: what is opened, closed and lost, and every byte
/// that is read or written.
///
/// The calls work as before, also when the record can no longer be written. As safe from several threads as
/// every System.
class RecordingSystem final : public System {
  public:
    /// `system` must outlive this object. The record's time starts here.
    /// @throws std::system_error naming `file` when it cannot be made.
    RecordingSystem(System& system, const std::string& file);

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
    struct Opened {
        int port;
        bool lost = false;
    };

    /// The number of a path, from 1, the same for each time it is opened.
    int numberOf(const std::string& path) REQUIRES(mutex_);
    void moved(int descriptor, LineRecord::Side from, std::span<const std::uint8_t> bytes);

    System& system_;
    Mutex mutex_;
    LineRecord record_ GUARDED_BY(mutex_);
    std::map<std::string, int> numbers_ GUARDED_BY(mutex_);
    std::map<int, Opened> open_ GUARDED_BY(mutex_);
};

}  // namespace velmorindal
