#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <random>
#include <string>
#include <thread>

#include "settingsfile/ChildProcess.h"
#include "settingsfile/SettingsFileTest.h"

namespace velmorindal {
namespace {

using AtomicSave = SettingsFileTest;

std::ptrdiff_t entriesOf(const std::filesystem::path& directory) {
    return std::distance(std::filesystem::directory_iterator{directory}, {});
}

TEST_F(AtomicSave, AFullDiskLeavesTheOldFileAndNothingElse) {
    writeFile(path("settings.xml"), "old");
    const int status = inChild([&] {
        // Files end after ten bytes; what is printed goes to a pipe, which has no such end.
        std::array<int, 2> output{};
        const rlimit tenBytes{.rlim_cur = 10, .rlim_max = 10};
        if (::pipe(output.data()) != 0 || ::dup2(output[1], STDOUT_FILENO) < 0 ||
            std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR || ::setrlimit(RLIMIT_FSIZE, &tenBytes) != 0) {
            return 1;
        }
        if (!model.writeXML(path("settings.xml"))) {
            return 2;
        }
        std::array<char, 4096> text{};
        const auto length = static_cast<std::size_t>(::read(output[0], text.data(), text.size()));
        return std::string_view{text.data(), length}.ends_with("\nWrite failed. Boo.\n") ? 0 : 3;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contentsOf(path("settings.xml")), "old");
    EXPECT_EQ(entriesOf(directory.path()), 1);
}

TEST_F(AtomicSave, ASaveLeavesNothingBesideTheFile) {
    save(path("settings.xml"));
    save(path("settings.xml"));
    EXPECT_EQ(entriesOf(directory.path()), 1);
}

/// A child that saves one of two settings after the other until it is killed, and tells when each save begins
/// and ends.
class SavingChild {
  public:
    SavingChild(VelmorindalSwitch& model, const std::string& file) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        child_ = startChild([&] {
            ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
            for (bool first = true;; first = !first) {
                choose(model, first ? complete : before);
                if (::write(ends[1], &begun, 1) != 1 || !model.writeXML(file) ||
                    ::write(ends[1], &ended, 1) != 1) {
                    return 1;
                }
            }
        });
        ::close(ends[1]);
        progress_ = ends[0];
    }
    SavingChild(const SavingChild&) = delete;
    SavingChild& operator=(const SavingChild&) = delete;
    ~SavingChild() { ::close(progress_); }

    void waitForFirstSave() {
        while (last_ != ended && readProgress()) {
        }
    }

    /// @returns the signal that ended the child.
    int kill() {
        ::kill(child_, SIGKILL);
        const int signal = -waitForChild(child_);
        while (readProgress()) {
        }
        return signal;
    }

    bool wasSaving() const { return last_ == begun; }

  private:
    static constexpr char begun = '(';
    static constexpr char ended = ')';

    bool readProgress() { return ::read(progress_, &last_, 1) == 1; }

    pid_t child_ = -1;
    int progress_ = -1;
    char last_ = ' ';
};

TEST_F(AtomicSave, AProcessKilledAtAnyMomentLeavesTheOldFileOrTheNewOne) {
    const std::string file = path("settings.xml");
    std::mt19937 random{20};
    std::uniform_int_distribution<int> microseconds{0, 4000};
    int killedWhileSaving = 0;
    for (int kills = 0; kills < 200; ++kills) {
        SavingChild child{model, file};
        child.waitForFirstSave();
        // Any moment of a save or between two, not a wait for something.
        std::this_thread::sleep_for(std::chrono::microseconds{microseconds(random)});
        ASSERT_EQ(child.kill(), SIGKILL);

        ASSERT_TRUE(load(file)) << contentsOf(file);
        const Settings loaded = settingsOf(model);
        ASSERT_TRUE(loaded == complete || loaded == before) << contentsOf(file);
        killedWhileSaving += child.wasSaving() ? 1 : 0;
    }
    // Otherwise nothing was shown.
    EXPECT_GT(killedWhileSaving, 10);
}

}  // namespace
}  // namespace velmorindal
