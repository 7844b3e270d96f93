#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "Scheduler.h"
#include "System.h"

namespace velmorindal {

/// The far end of a terminal that exists in this process only. By default it takes everything, always has
/// something to read, and is there.
class VirtualLine {
  public:
    VirtualLine() = default;
    VirtualLine(const VirtualLine&) = delete;
    VirtualLine& operator=(const VirtualLine&) = delete;
    virtual ~VirtualLine() = default;

    // As System has them; `now` is the time of the call.

    virtual std::ptrdiff_t read(std::span<std::uint8_t> buffer, System::Clock::time_point now) = 0;
    virtual std::ptrdiff_t write(std::span<const std::uint8_t> bytes, System::Clock::time_point /*now*/) {
        return std::ssize(bytes);
    }
    virtual bool isReady(System::Readiness /*readiness*/, System::Clock::time_point /*now*/) { return true; }
    /// When the line will next have something to do; nothing where no time needs to pass.
    virtual std::optional<System::Clock::time_point> due() { return std::nullopt; }
    /// Whether its node is still there.
    virtual bool isPresent() const { return true; }
    /// The last descriptor was closed: what was not read is dropped.
    virtual void closed() {}
};

/// A system of terminals in this process, under a scheduler whose virtual time is its clock: nothing is ever
/// waited for.
///
/// Only the threads of the schedule use it.
class VirtualSystem : public System {
  public:
    explicit VirtualSystem(Scheduler& scheduler) : scheduler_{scheduler} {}

    /// From now on `path` opens `line`, which must outlive the system or be removed.
    void add(const std::filesystem::path& path, VirtualLine& line);
    /// The line is gone: for those who have it open, as if it were pulled out.
    void remove(const VirtualLine& line);

    /// From now on `path` refuses to be opened, for the reason given as `errno` has it.
    void refuse(const std::filesystem::path& path, int reason) { refusals_[path.string()] = reason; }
    /// From now on this process is said to hold `path`.
    void setHolder(const std::filesystem::path& path, NodeHolder holder) {
        holders_.insert_or_assign(path.string(), std::move(holder));
    }
    /// From now on every open takes long enough for its caller to hear of it.
    void openSlowly() { opensSlowly_ = true; }

    /// From now on the system holds a line that was closed for as long, and its next open waits for that.
    void closeSlowly(Clock::duration duration) { closing_ = duration; }

    Scheduler& scheduler() const { return scheduler_; }
    bool isOpen(int descriptor) const { return open_.contains(descriptor); }
    /// How many descriptors are open.
    std::size_t openDescriptors() const { return open_.size(); }

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
        /// None once it was removed.
        VirtualLine* line;
        termios attributes = {};
    };

    Opened* opened(int descriptor);
    VirtualLine* lineOf(int descriptor);
    void waitForTheOpen(Clock::duration duration, const std::function<void()>& whenSlow);

    Scheduler& scheduler_;
    std::map<std::string, VirtualLine*> lines_;
    std::map<int, Opened> open_;
    std::map<std::string, int> refusals_;
    std::map<std::string, NodeHolder> holders_;
    bool opensSlowly_ = false;
    Clock::duration closing_{0};
    /// Until when a closed line is held.
    std::map<const VirtualLine*, Clock::time_point> heldUntil_;
    int nextDescriptor_ = 100;
};

}  // namespace velmorindal
