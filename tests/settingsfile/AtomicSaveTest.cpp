#include <fcntl.h>
#include <poll.h>
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
    testing::internal::CaptureStdout();
    const int status = inChild([&] {
        // To a file, the disk ends after ten bytes; what is printed goes to a pipe, which has no such end.
        std::array<int, 2> output{};
        const rlimit tenBytes{.rlim_cur = 10, .rlim_max = 10};
        if (::pipe(output.data()) != 0 || std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR) {
            return 2;
        }
        const int captured = ::dup(STDOUT_FILENO);
        ::dup2(output[1], STDOUT_FILENO);
        if (::setrlimit(RLIMIT_FSIZE, &tenBytes) != 0 || !model.writeXML(path("settings.xml"))) {
            return 3;
        }
        std::array<char, 4096> text{};
        const ssize_t length = ::read(output[0], text.data(), text.size());
        ::close(captured);
        return std::string_view{text.data(), static_cast<std::size_t>(length)}.ends_with(
                   "\nWrite failed. Boo.\n")
                   ? 0
                   : 4;
    });
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contentsOf(path("settings.xml")), "old");
    EXPECT_EQ(entriesOf(directory.path()), 1);
}

TEST_F(AtomicSave, ASaveLeavesNothingBesideTheFile) {
    save(path("settings.xml"));
    save(path("settings.xml"));
    EXPECT_EQ(entriesOf(directory.path()), 1);
}

/// A child that saves one of two settings after the other until it is killed.
class SavingChild {
  public:
    SavingChild(VelmorindalSwitch& model, const std::string& file) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        child_ = startChild([&] {
            ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
            for (bool first = true;; first = !first) {
                choose(model, first ? complete : before);
                model.writeXML(file);
                if (first && ::write(ends[1], "", 1) != 1) {
                    return 1;
                }
            }
        });
        ::close(ends[1]);
        saved_ = ends[0];
    }
    SavingChild(const SavingChild&) = delete;
    SavingChild& operator=(const SavingChild&) = delete;
    ~SavingChild() { ::close(saved_); }

    bool waitForFirstSave() const {
        pollfd saved{.fd = saved_, .events = POLLIN, .revents = 0};
        return ::poll(&saved, 1, 30'000) == 1 && (saved.revents & POLLIN) != 0;
    }

    /// @returns the signal that ended the child.
    int kill() const {
        ::kill(child_, SIGKILL);
        return -waitForChild(child_);
    }

  private:
    pid_t child_ = -1;
    int saved_ = -1;
};

TEST_F(AtomicSave, AProcessKilledAtAnyMomentLeavesTheOldFileOrTheNewOne) {
    const std::string file = path("settings.xml");
    std::mt19937 random{20};  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same moments every time.
    std::uniform_int_distribution<int> microseconds{0, 4000};
    int killedWhileSaving = 0;
    for (int kills = 0; kills < 200; ++kills) {
        const SavingChild child{model, file};
        ASSERT_TRUE(child.waitForFirstSave());
        // Any moment of a save or between two, not a wait for something.
        std::this_thread::sleep_for(std::chrono::microseconds{microseconds(random)});
        ASSERT_EQ(child.kill(), SIGKILL);

        ASSERT_TRUE(load(file)) << contentsOf(file);
        const Settings loaded = settingsOf(model);
        ASSERT_TRUE(loaded == complete || loaded == Settings{before}) << contentsOf(file);
        for (const auto& entry : std::filesystem::directory_iterator{directory.path()}) {
            if (entry.path() != file) {
                ++killedWhileSaving;
                std::filesystem::remove(entry.path());
            }
        }
    }
    // Otherwise nothing was shown.
    EXPECT_GT(killedWhileSaving, 10);
}

}  // namespace
}  // namespace velmorindal
