#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "SessionTest.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

constexpr const char* refused = "Open Result:  -1\n";

/// While it lives, this process may have that many descriptors at once.
class DescriptorLimit {
  public:
    explicit DescriptorLimit(rlim_t limit) {
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &before_), 0);
        const rlimit lowered{.rlim_cur = limit, .rlim_max = before_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &lowered), 0);
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &before_); }

  private:
    rlimit before_{};
};

/// A dongle whose directory holds more than it should. Everything named here is named like a dongle.
class HostileNeighbours : public TerminalSessionTest {
  protected:
    fs::path named(const std::string& rest) const { return directory.path() / ("cu.usbmodem" + rest); }

    void addFile(const std::string& rest) { std::ofstream{named(rest)} << "somebody's diary"; }
    void addPipe(const std::string& rest) { EXPECT_EQ(::mkfifo(named(rest).c_str(), 0666), 0); }
    void addLink(const std::string& rest, const fs::path& target) { fs::create_symlink(target, named(rest)); }

    void addSocket(const std::string& rest) {
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        const std::string path = named(rest);
        ASSERT_LT(path.size(), sizeof address.sun_path);
        std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
        const int server = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(::bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(server, 1), 0);
        ::close(server);
    }

    /// Adds every kind of entry that is no device. @returns how many there are.
    std::ptrdiff_t addEveryKind(const std::string& rest) {
        fs::create_directory(named("-directory" + rest));
        addFile("-file" + rest);
        addPipe("-pipe" + rest);
        addSocket("-socket" + rest);
        addLink("-dangling" + rest, "nowhere");
        addLink("-itself" + rest, named("-itself" + rest));
        addLink("-one" + rest, named("-other" + rest));
        addLink("-other" + rest, named("-one" + rest));
        addLink("-up" + rest, directory.path());
        addLink("-to-file" + rest, named("-file" + rest));
        addLink("-to-pipe" + rest, named("-pipe" + rest));
        return 11;
    }

    /// Lists the dongles; what it printed is in `printed`.
    std::vector<std::string> list() {
        PrintedLines lines;
        auto dongles = velmorindal.listDevices();
        printed = lines.take();
        return dongles;
    }

    std::string path() const { return dongle.path().string(); }

    std::string printed;
};

TEST_F(HostileNeighbours, EveryOtherNodeIsRefusedWithoutAQueryAndTheDongleIsFound) {
    const std::ptrdiff_t neighbours = addEveryKind("");
    // Opening one of them and asking it would wait forever.
    EXPECT_THAT(list(), ElementsAre(path()));
    EXPECT_EQ(occurrences(printed, refused), neighbours) << printed;
    EXPECT_EQ(occurrences(printed, "Open Result: "), neighbours + 1) << printed;
}

TEST_F(HostileNeighbours, NoFileAndNoPipeGetsAByte) {
    addFile("-diary");
    addPipe("-pipe");
    const int reader = ::open(named("-pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_TRUE(connect());
    char byte = 0;
    EXPECT_EQ(::read(reader, &byte, 1), 0) << "somebody wrote into the pipe";
    ::close(reader);
    EXPECT_EQ(contentsOf(named("-diary")), "somebody's diary");
}

TEST_F(HostileNeighbours, ADongleMayHaveAnyName) {
    dongle.unplug();
    const std::string name = "cu.usbmodem a \"b\"\nOpen Result:\t\x7F\xC3\xFF";
    const VirtualDongle odd{directory.path(), {.name = name}};
    PrintedLines lines;
    EXPECT_TRUE(connect());
    EXPECT_EQ(velmorindal.serialPort.get()->path, odd.path().string());
    const std::string text = lines.take();
    EXPECT_THAT(text, HasSubstr("Definitely this one  " + odd.path().string() + "\n"));
    EXPECT_THAT(text, HasSubstr(" a \\\"b\\\"\\x0aOpen Result:\\x09\\x7f\xC3\xFF\"]\n"));
}

TEST_F(HostileNeighbours, AThousandCandidatesLeaveADescriptorForTheDongle) {
    constexpr int rounds = 100;
    for (int round = 0; round < rounds; ++round) {
        addEveryKind(std::to_string(round));
    }
    // File systems list in different orders. One dongle was there first; where it does not come last, another
    // takes the place of the neighbour that does: the later of the two has most of the crowd before it.
    const DongleSearch search{.directory = directory.path().string() + "/"};
    std::vector<std::string> dongles{path()};
    std::optional<VirtualDongle> second;
    if (const fs::path last = search.candidates().back(); last != path()) {
        fs::remove(last);
        second.emplace(directory.path(), VirtualDongle::Options{.name = last.filename()});
        dongles.push_back(second->path().string());
    }
    const auto candidates = search.candidates();
    ASSERT_GE(candidates.size(), 1100U);
    std::ptrdiff_t farthest = 0;
    for (const std::string& one : dongles) {
        farthest = std::max(farthest, std::ranges::find(candidates, one) - candidates.begin());
    }
    ASSERT_GT(farthest, 500);

    const DescriptorLimit limit{256};
    EXPECT_THAT(list(), UnorderedElementsAreArray(dongles));
    EXPECT_TRUE(connect());
}

TEST_F(HostileNeighbours, DirectoriesWithinDirectoriesEndWhereTheDescriptorsDo) {
    fs::path deep = named("-deep");
    for (int level = 0; level < 400; ++level) {
        deep /= "d";
    }
    fs::create_directories(deep);
    const DescriptorLimit limit{256};
    EXPECT_THAT(list(), ElementsAre(path()));
}

TEST_F(HostileNeighbours, AnEntryThatVanishesBeforeItIsOpenedIsRefusedLikeAnyOther) {
    // The one dongle takes the other away while it is being asked.
    VirtualDongle second{directory.path(), {.name = "cu.usbmodem-second"}};
    const std::string first = DongleSearch{.directory = directory.path().string() + "/"}.candidates().front();
    VirtualDongle& asked = first == path() ? dongle : second;
    VirtualDongle& gone = first == path() ? second : dongle;
    asked.whenReceived([&](std::span<const std::uint8_t>) { fs::remove(gone.path()); });
    EXPECT_THAT(list(), ElementsAre(asked.path().string()));
    EXPECT_EQ(occurrences(printed, refused), 1) << printed;
}

}  // namespace
}  // namespace velmorindal
