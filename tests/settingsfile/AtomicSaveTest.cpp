#include <fcntl.h>
#include <unistd.h>

#include <QRandomGenerator>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <thread>

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

/// A child that saves one of two settings after the other until it is killed, and reports when each save
/// begins and ends.
class SavingChild {
  public:
    SavingChild(VelmorindalSwitch& model, const std::string& file, bool completeFirst) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        takeOtherNamesThanTheLastChild();
        child_ = startChild([&] {
            ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
            for (bool savesComplete = completeFirst;; savesComplete = !savesComplete) {
                choose(model, savesComplete ? complete : before);
                const char begun = savesComplete ? completeBegun : beforeBegun;
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

    /// @returns false when the child ended before.
    bool waitForFirstSave() { return readProgress(); }

    /// @returns the signal that ended the child.
    int kill() {
        ::kill(child_, SIGKILL);
        const int signal = -waitForChild(child_);
        while (readProgress()) {
        }
        return signal;
    }

    bool wasSaving() const { return wasSaving_; }
    /// What was being saved, or was saved last.
    const Settings& newest() const { return newestIsComplete_ ? complete : before; }

  private:
    static constexpr char completeBegun = 'c';
    static constexpr char beforeBegun = 'b';
    static constexpr char ended = ')';

    /// Temporary files get random names. Children of one process would all draw the same ones, and meet the
    /// files that the last one left.
    static void takeOtherNamesThanTheLastChild() {
        constexpr int moreThanOneChildDraws = 2000;
        for (int draws = 0; draws < moreThanOneChildDraws; ++draws) {
            QRandomGenerator::global()->generate();
        }
    }

    bool readProgress() {
        char step = ' ';
        if (::read(progress_, &step, 1) != 1) {
            return false;
        }
        wasSaving_ = step != ended;
        newestIsComplete_ = wasSaving_ ? step == completeBegun : newestIsComplete_;
        return true;
    }

    pid_t child_ = -1;
    int progress_ = -1;
    bool wasSaving_ = false;
    bool newestIsComplete_ = false;
};

/// In memory, where no disk slows a save down, so that kills hit every moment of one. A killed process loses
/// nothing that it has already written.
class KilledSave : public AtomicSave {
  protected:
    /// The longest wait before a kill: two saves.
    std::chrono::microseconds twoSaves() {
        const auto start = std::chrono::steady_clock::now();
        for (int saves = 0; saves < 20; ++saves) {
            save(file);
        }
        return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() -
                                                                     start) /
               10;
    }

    const std::filesystem::path memory = "/dev/shm";
    const TemporaryDirectory place{
        std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path()};
    const std::string file = place.path() / "settings.xml";
};

TEST_F(KilledSave, LeavesTheOldFileOrTheNewOneAndNothingThatHindersTheNext) {
    constexpr int kills = 1000;
    std::mt19937 random{20};
    std::uniform_int_distribution<std::int64_t> microseconds{0, twoSaves().count()};
    choose(model, before);
    save(file);
    int oldFound = 0;
    int newFound = 0;
    int betweenSaves = 0;
    for (int count = 0; count < kills; ++count) {
        SavingChild child{model, file, settingsOf(model) == before};
        ASSERT_TRUE(child.waitForFirstSave());
        // Any moment of a save or between two, not a wait for something.
        std::this_thread::sleep_for(std::chrono::microseconds{microseconds(random)});
        ASSERT_EQ(child.kill(), SIGKILL);

        ASSERT_TRUE(load(file)) << contentsOf(file);
        const Settings loaded = settingsOf(model);
        ASSERT_TRUE(loaded == complete || loaded == before) << contentsOf(file);
        if (!child.wasSaving()) {
            ASSERT_EQ(loaded, child.newest());
        }
        ++(!child.wasSaving() ? betweenSaves : loaded == child.newest() ? newFound : oldFound);
    }
    const std::ptrdiff_t left = entriesOf(place.path()) - 1;
    std::cout << kills << " kills: " << oldFound + newFound << " during a save (the old file " << oldFound
              << " times, the new one " << newFound << " times), " << betweenSaves << " between two, " << left
              << " temporary files left\n";
    // Otherwise nothing was shown.
    EXPECT_GT(oldFound, kills / 20);
    EXPECT_GT(newFound, 0);
    EXPECT_GT(left, 0);

    choose(model, complete);
    save(file);
    EXPECT_EQ(printed.find("Write failed"), std::string::npos);
    EXPECT_EQ(entriesOf(place.path()) - 1, left) << "a save takes its own temporary file away, and no other";
    choose(model, before);
    expectLoaded(file);
}

}  // namespace
}  // namespace velmorindal
