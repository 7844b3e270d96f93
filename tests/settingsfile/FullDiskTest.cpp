#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "ForkedChild.h"
#include "SettingsFileTest.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;

/// How a child of the test ended; named for what did not hold.
enum Outcome : int { well, diskNotFilled, saveSucceeded, oldFileChanged, somethingLeft, saveFailedAfterRoom };

bool writeWhole(const std::string& file, const std::string& text) {
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC);
    const bool whole =
        descriptor >= 0 && ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::close(descriptor);
    return whole;
}

/// Gives this process a view of the file systems that is its own and that it may mount in: as the superuser,
/// or as any user where the system allows that.
bool mayMount() {
    if (::unshare(CLONE_NEWNS) == 0) {
        return true;
    }
    const std::string user = "0 " + std::to_string(::geteuid()) + " 1";
    const std::string group = "0 " + std::to_string(::getegid()) + " 1";
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && writeWhole("/proc/self/setgroups", "deny") &&
           writeWhole("/proc/self/uid_map", user) && writeWhole("/proc/self/gid_map", group);
}

/// A disk with so little room, seen by this process alone. @returns false where the system allows none.
bool mountSmallDisk(const fs::path& place, const char* room) {
    return mayMount() && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount("tmpfs", place.c_str(), "tmpfs", 0, room) == 0;
}

/// Takes all the room that is left. @returns whether it came to an end.
bool fill(const fs::path& file) {
    const std::array<char, 4096> block{};
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ssize_t written = 1;
    for (int count = 0; count < 1000 && written > 0; ++count) {
        written = ::write(descriptor, block.data(), block.size());
    }
    ::close(descriptor);
    return written < 0;
}

struct Room {
    const char* name;
    const char* option;
};

class AFullDisk : public SettingsFileTest, public testing::WithParamInterface<Room> {
  protected:
    /// Saves and keeps what that printed, in a child, where the test's own way of catching it does not reach.
    bool saveFails(const fs::path& file) {
        std::array<int, 2> output{};
        const int before = ::dup(STDOUT_FILENO);
        if (::pipe(output.data()) != 0 || ::dup2(output[1], STDOUT_FILENO) < 0 || !model.writeXML(file)) {
            return false;
        }
        ::dup2(before, STDOUT_FILENO);
        std::array<char, 4096> text{};
        const ssize_t length = ::read(output[0], text.data(), text.size());
        return std::string_view{text.data(), static_cast<std::size_t>(length)}.ends_with(
            "\nWrite failed. Boo.\n");
    }

    /// Saves over an old file while there is no room, and again when `makeRoom` has made some.
    template <typename MakeRoom>
    int saveWithoutRoomThenWith(const fs::path& disk, std::ptrdiff_t entries, MakeRoom makeRoom) {
        const fs::path file = disk / "settings.xml";
        if (!saveFails(file)) {
            return saveSucceeded;
        }
        if (contentsOf(file) != "old") {
            return oldFileChanged;
        }
        if (entriesOf(disk) != entries) {
            return somethingLeft;
        }
        makeRoom();
        return !saveFails(file) && model.loadXML(file) && model.chosenSettings() == complete
                   ? well
                   : saveFailedAfterRoom;
    }

    static constexpr int noDisk = 100;

    int saveOnSmallDisk() {
        return inChild([this] {
            const fs::path disk = directory.path();
            if (!mountSmallDisk(disk, GetParam().option)) {
                return noDisk;
            }
            std::ofstream{disk / "settings.xml"} << "old";
            const fs::path filler = disk / "filler";
            if (!fill(filler)) {
                return static_cast<int>(diskNotFilled);
            }
            const std::ptrdiff_t entries = entriesOf(disk);
            return saveWithoutRoomThenWith(disk, entries, [&] {
                // The old file goes too: a replacement needs a second name beside the first.
                fs::remove(filler);
                fs::remove(disk / "settings.xml");
            });
        });
    }

    int saveWithShortFiles() {
        return inChild([this] {
            std::ofstream{path("settings.xml")} << "old";
            const rlimit tenBytes{.rlim_cur = 10, .rlim_max = RLIM_INFINITY};
            if (std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR || ::setrlimit(RLIMIT_FSIZE, &tenBytes) != 0) {
                return static_cast<int>(diskNotFilled);
            }
            return saveWithoutRoomThenWith(directory.path(), 1, [] {
                const rlimit noLimit{.rlim_cur = RLIM_INFINITY, .rlim_max = RLIM_INFINITY};
                ::setrlimit(RLIMIT_FSIZE, &noLimit);
            });
        });
    }
};

TEST_P(AFullDisk, LeavesTheOldFileAndSaysSoAndIsWrittenOnceThereIsRoom) {
    model.choose(complete);
    int outcome = saveOnSmallDisk();
    if (outcome == noDisk) {
        std::cout << "No disk could be mounted; files that end after ten bytes instead.\n";
        outcome = saveWithShortFiles();
    } else {
        std::cout << "A disk of its own: " << GetParam().option << "\n";
    }
    EXPECT_EQ(outcome, well);
}

INSTANTIATE_TEST_SUITE_P(SettingsFile, AFullDisk,
                         testing::Values(Room{"WithoutABlockLeft", "size=16k"},
                                         Room{"WithoutANameLeft", "size=16k,nr_inodes=3"}),
                         [](const auto& test) { return std::string{test.param.name}; });

}  // namespace
}  // namespace velmorindal
