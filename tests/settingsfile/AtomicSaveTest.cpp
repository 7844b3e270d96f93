#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <string>
#include <string_view>

#include "ForkedChild.h"
#include "SettingsFileTest.h"

namespace velmorindal {
namespace {

using AtomicSave = SettingsFileTest;

TEST_F(AtomicSave, ASaveLeavesNothingBesideTheFile) {
    save(path("settings.xml"));
    save(path("settings.xml"));
    EXPECT_EQ(entriesOf(directory.path()), 1);
}

/// A child that saves the settings of `model` once, and stops at the begin and at the end of each system
/// call.
class SavingChild {
  public:
    SavingChild(const VelmorindalSwitch& model, const std::string& file)
        : child_{startChild([&] {
              ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
              if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
                  return notTraced;
              }
              std::raise(SIGSTOP);
              return model.writeXML(file) ? 0 : 1;
          })} {
        stops();
    }
    SavingChild(const SavingChild&) = delete;
    SavingChild& operator=(const SavingChild&) = delete;
    ~SavingChild() {
        if (!hasEnded()) {
            ::kill(child_, SIGKILL);
            waitForChild(child_);
        }
    }

    static constexpr int notTraced = 9;

    /// Lets it come to its next stop. @returns false when it has ended instead.
    bool step() {
        EXPECT_EQ(::ptrace(PTRACE_SYSCALL, child_, nullptr, nullptr), 0);
        return stops();
    }

    bool hasEnded() const { return !WIFSTOPPED(status_); }
    /// Its status, once it has ended by itself.
    int status() const { return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1; }

  private:
    bool stops() {
        EXPECT_EQ(::waitpid(child_, &status_, 0), child_);
        return !hasEnded();
    }

    const pid_t child_;
    int status_ = 0;
};

TEST_F(AtomicSave, AKillLeavesTheOldFileOrTheNewOneAndNothingThatHindersTheNext) {
    // In memory, where a save does not wait for a disk.
    const std::filesystem::path memory = "/dev/shm";
    const TemporaryDirectory place{
        std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path()};
    const std::string file = place.path() / "settings.xml";
    int oldFound = 0;
    int newFound = 0;
    bool ended = false;
    for (int steps = 0; !ended; ++steps) {
        model.choose(before);
        save(file);
        model.choose(complete);
        {
            SavingChild child{model, file};
            if (child.hasEnded() && child.status() == SavingChild::notTraced) {
                GTEST_SKIP() << "a process may not trace its children here";
            }
            for (int step = 0; step < steps && child.step(); ++step) {
            }
            ended = child.hasEnded();
            EXPECT_EQ(ended ? child.status() : 0, 0);
        }
        model.choose({});
        ASSERT_TRUE(load(file)) << contentsOf(file);
        const ChosenSettings loaded = model.chosenSettings();
        ASSERT_TRUE(loaded == complete || (loaded == before && newFound == 0)) << contentsOf(file);
        ++(loaded == complete ? newFound : oldFound);
    }
    EXPECT_GT(oldFound, 0);
    EXPECT_GT(newFound, 0);
    const std::ptrdiff_t left = entriesOf(place.path()) - 1;
    EXPECT_GT(left, 0) << "no kill has left a temporary file";

    model.choose(complete);
    save(file);
    EXPECT_EQ(printed.find("Write failed"), std::string::npos);
    EXPECT_EQ(entriesOf(place.path()) - 1, left) << "a save takes its own temporary file away, and no other";
    model.choose(before);
    expectLoaded(file);
}

}  // namespace
}  // namespace velmorindal
