#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

#include "Eventually.h"
#include "InsideWait.h"
#include "RawHost.h"
#include "TemporaryDirectory.h"
#include "VirtualDongle.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class Plugging : public testing::Test {
  protected:
    TemporaryDirectory directory_;
    const fs::path link_ = directory_.path() / "cu.usbmodem-simulated";
};

bool isExclusive(const RawHost& host) {
    int exclusive = 0;
    EXPECT_EQ(::ioctl(host.descriptor(), TIOCGEXCL, &exclusive), 0);
    return exclusive != 0;
}

TEST_F(Plugging, ADongleIsALinkToATerminalAndIsGoneWhenItIsDropped) {
    {
        const VirtualDongle dongle{directory_.path()};
        EXPECT_EQ(dongle.path(), link_);
        EXPECT_TRUE(fs::is_symlink(link_));
        EXPECT_TRUE(fs::is_character_file(link_));
        EXPECT_TRUE(dongle.isPlugged());
    }
    EXPECT_TRUE(fs::is_empty(directory_.path()));
}

TEST_F(Plugging, TheTerminalIsRawAndDoesNotEcho) {
    const VirtualDongle dongle{directory_.path()};
    const RawHost host{dongle.path()};
    termios settings{};
    ASSERT_EQ(::tcgetattr(host.descriptor(), &settings), 0);
    EXPECT_EQ(settings.c_lflag & (ECHO | ICANON | ISIG), 0U);
    EXPECT_EQ(settings.c_oflag & OPOST, 0U);
}

TEST_F(Plugging, AMissingDirectoryIsAnErrorThatNamesThePath) {
    try {
        const VirtualDongle dongle{directory_.path() / "missing"};
        FAIL() << "no error";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_THAT(error.what(), HasSubstr((directory_.path() / "missing").string()));
        EXPECT_THAT(error.what(), HasSubstr("No such file or directory"));
    }
}

TEST_F(Plugging, ANameThatIsTakenIsAnErrorAndWhatHasItIsUnharmed) {
    std::ofstream{link_} << "somebody's file";
    EXPECT_THROW(VirtualDongle{directory_.path()}, std::system_error);
    EXPECT_EQ(contentsOf(link_), "somebody's file");
}

TEST_F(Plugging, ALinkThatSomebodyReplacedIsNotRemoved) {
    std::optional<VirtualDongle> dongle{std::in_place, directory_.path()};
    fs::remove(link_);
    fs::create_symlink("/dev/null", link_);
    dongle.reset();
    EXPECT_EQ(fs::read_symlink(link_), "/dev/null");
}

TEST_F(Plugging, UnpluggingTakesTheLinkAwayAndEndsEveryRead) {
    VirtualDongle dongle{directory_.path()};
    const RawHost host{dongle.path()};
    EXPECT_EQ(host.linkCount(), 1U);

    dongle.unplug();

    EXPECT_FALSE(dongle.isPlugged());
    EXPECT_FALSE(fs::exists(fs::symlink_status(link_)));
    EXPECT_EQ(host.linkCount(), 0U);
    EXPECT_TRUE(host.sawTheEnd());
}

TEST_F(Plugging, UnpluggingEndsAReadThatIsWaiting) {
    VirtualDongle dongle{directory_.path()};
    const RawHost host{dongle.path()};
    std::atomic<pid_t> readerId{0};
    std::thread reader{[&] {
        readerId = ::gettid();
        EXPECT_TRUE(host.sawTheEnd());
    }};
    EXPECT_TRUE(eventually([&] { return isInsideWait(readerId); }));
    dongle.unplug();
    reader.join();
}

TEST_F(Plugging, UnpluggingTwiceAndFromTwoThreadsIsOnce) {
    VirtualDongle dongle{directory_.path()};
    std::thread other{[&] { dongle.unplug(); }};
    dongle.unplug();
    other.join();
    dongle.unplug();
    EXPECT_FALSE(dongle.isPlugged());
}

TEST_F(Plugging, WhatWasDoneToTheDeviceCanStillBeAskedAfterUnplugging) {
    VirtualDongle dongle{directory_.path()};
    RawHost{dongle.path()}.ask(query('w'), 4);
    dongle.unplug();
    EXPECT_TRUE(dongle.state().stored);
    EXPECT_EQ(dongle.receivedFrames().size(), 1U);
}

TEST_F(Plugging, TheExclusiveModeAndUnreadBytesOfAHostThatLeftEndSoonAfterwards) {
    const VirtualDongle dongle{directory_.path()};
    // It has the port open all the time, and so sees the mode without being another host that comes and goes.
    const RawHost onlooker{dongle.path()};
    {
        const RawHost host{dongle.path()};
        ASSERT_EQ(::ioctl(host.descriptor(), TIOCEXCL), 0);
        ASSERT_TRUE(isExclusive(onlooker));
        host.ask(query('s') + query('s'), 5);
    }
    EXPECT_TRUE(eventually([&] { return !isExclusive(onlooker); }));
    EXPECT_EQ(RawHost{dongle.path()}.ask(query('x'), 5), frame('r', 'x', {0}));
}

TEST_F(Plugging, TheExclusiveModeOfAHostThatHoldsTheLockIsLeftAlone) {
    PseudoTerminal terminal{link_};
    const RawHost host{link_};
    ASSERT_EQ(::flock(host.descriptor(), LOCK_EX | LOCK_NB), 0);
    ASSERT_EQ(::ioctl(host.descriptor(), TIOCEXCL), 0);

    terminal.forgetHost();
    EXPECT_TRUE(isExclusive(host));

    ASSERT_EQ(::flock(host.descriptor(), LOCK_UN), 0);
    terminal.forgetHost();
    EXPECT_FALSE(isExclusive(host));
    EXPECT_EQ(::flock(host.descriptor(), LOCK_EX | LOCK_NB), 0);
}

}  // namespace
}  // namespace velmorindal
