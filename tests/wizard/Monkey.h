#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "DeviceUsers.h"
#include "MonkeyHands.h"
#include "PosixSystem.h"
#include "PrintedLines.h"
#include "QtDispatch.h"
#include "SentFrames.h"
#include "StepWatch.h"
#include "TemporaryDirectory.h"
#include "VirtualDongle.h"
#include "WatchedWrites.h"
#include "Wizard.h"

namespace velmorindal {

/// A user without a plan at the real widgets, beside a dongle that fails and is pulled out at random. What
/// must always hold is checked after each step; the first time that it does not, a step throws
/// std::runtime_error.
///
/// What a step does depends on the seed, its number and what is shown.
class Monkey {
  public:
    explicit Monkey(std::uint64_t seed);
    Monkey(const Monkey&) = delete;
    Monkey& operator=(const Monkey&) = delete;
    ~Monkey();

    void step();

    std::size_t stepsDone() const { return steps_; }
    /// What was done, in numbers.
    std::string summary() const;
    /// How a step failed, with the latest steps in words and how to come there again.
    std::string failure(const std::string& what) const;

  private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds longestWait{5};

    bool oneIn(std::size_t count) { return random_() % count == 0; }
    /// Turns the event loop. @returns false when the bound passed first.
    static bool turnUntil(std::chrono::milliseconds bound, const std::function<bool()>& condition);
    [[noreturn]] static void fail(const std::string& what);
    /// Ends the process: the step under way will not come to its end.
    [[noreturn]] void giveUp() const;
    void startProgram();
    void endProgram();
    void plugIn();
    void meddleWithTheDongle();
    Fault someFault();
    void cutTheNext(VelmorindalMessageType type);
    void actOnTheWindow();
    void letSettle();
    void expectAnswer();

    void check();
    void checkButtons();
    void checkFrames();
    void checkOperations();
    void checkFarewell();
    void checkThatNothingIsLeftOpen();
    std::vector<std::string> buttonsOfTheTable() const;

    const std::uint64_t seed_;
    std::mt19937_64 random_;
    TemporaryDirectory devices_;
    TemporaryDirectory files_;
    PrintedLines log_;
    MonkeyHands hands_{random_, files_.path()};
    std::unique_ptr<VirtualDongle> dongle_;
    SentFrames sent_;
    std::size_t framesSeen_ = 0;
    bool meddles_ = false;
    std::optional<DeviceUsers> users_;
    /// Bytes of cut frames that may have gone out alone.
    std::size_t loneBytes_ = 0;
    bool sawWriteWithoutState_ = false;
    WatchedWrites<PosixSystem> system_;
    QtDispatch dispatch_;
    std::unique_ptr<Wizard> wizard_;
    std::optional<std::string> farewell_;

    std::size_t steps_ = 0;
    std::size_t programs_ = 0;
    std::size_t writes_ = 0;
    std::size_t faults_ = 0;
    std::size_t unpluggings_ = 0;
    Clock::duration longestAction_{0};
    Clock::duration longestAnswer_{0};
    std::vector<std::string> recent_;
    StepWatch watch_{[this] { giveUp(); }};
};

}  // namespace velmorindal
