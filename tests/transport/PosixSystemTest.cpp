#include "PosixSystem.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "FreshTerminal.h"
#include "SerialPortTesting.h"

namespace velmorindal {
namespace {

/// Two connected sockets. The system waits in the close of the first for what the second has not taken, as it
/// does for a serial line, and as it never does for a pseudo-terminal.
class ALineThatIsSlowToClose : public testing::Test {
  protected:
    void SetUp() override {
        const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        auto* const general = reinterpret_cast<sockaddr*>(&address);
        socklen_t size = sizeof address;
        ASSERT_EQ(::bind(listener, general, size), 0);
        ASSERT_EQ(::listen(listener, 1), 0);
        ASSERT_EQ(::getsockname(listener, general, &size), 0);
        line = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ASSERT_EQ(::connect(line, general, size), 0);
        device = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        ASSERT_NE(device, -1);
        ::close(listener);
        const linger patience{.l_onoff = 1, .l_linger = 3600};
        ASSERT_EQ(::setsockopt(line, SOL_SOCKET, SO_LINGER, &patience, sizeof patience), 0);
    }

    void TearDown() override { ::close(device); }

    /// Sends until nothing more is taken. @returns how many bytes were.
    std::size_t fill() const {
        const std::array<char, 4096> bytes{};
        std::size_t sent = 0;
        ssize_t count = 0;
        while ((count = ::send(line, bytes.data(), bytes.size(), MSG_DONTWAIT)) > 0) {
            sent += static_cast<std::size_t>(count);
        }
        return sent;
    }

    int line = -1;
    int device = -1;
};

TEST_F(ALineThatIsSlowToClose, IsClosedWithoutWaitingAndLosesNothing) {
    const std::size_t sent = fill();

    posix.close(line);

    // Only now does the device take anything.
    std::array<char, 65536> taken{};
    std::size_t received = 0;
    ssize_t count = 0;
    while ((count = ::recv(device, taken.data(), taken.size(), 0)) > 0) {
        received += static_cast<std::size_t>(count);
    }
    EXPECT_EQ(received, sent);
    EXPECT_TRUE(eventually([this] { return !isOpen(line); }));
}

TEST_F(ALineThatIsSlowToClose, IsUnlockedBeforeTheCloseThatIsWaitedForElsewhere) {
    fill();
    ASSERT_EQ(::flock(line, LOCK_EX | LOCK_NB), 0);
    // The lock belongs to both, and outlives the close of one.
    const int second = ::dup(line);
    const auto isLocked = [second] {
        std::ifstream file{"/proc/self/fdinfo/" + std::to_string(second)};
        const std::string text{std::istreambuf_iterator<char>{file}, {}};
        return text.find("FLOCK") != std::string::npos;
    };
    ASSERT_TRUE(isLocked());

    posix.close(line);

    EXPECT_FALSE(isLocked());
    EXPECT_TRUE(eventually([this] { return !isOpen(line); }));
    // What was sent is lost with its receiver, so that this close has nothing to wait for.
    ::close(std::exchange(device, -1));
    ::close(second);
}

TEST(PosixSystem, WaitsAndSleepsNoShorterThanItWasAskedTo) {
    const auto awake = posix.now() + std::chrono::milliseconds{2};
    posix.sleepFor(std::chrono::milliseconds{2});
    EXPECT_GE(posix.now(), awake);

    const FreshTerminal terminal;
    const int line = posix.openExclusively(terminal.path(), O_RDWR, {});
    ASSERT_NE(line, -1);

    for (int round = 0; round < 20; ++round) {
        const auto until = posix.now() + std::chrono::microseconds{900};
        EXPECT_FALSE(posix.wait(line, System::Readiness::toRead, until));
        EXPECT_GE(posix.now(), until);
    }

    posix.close(line);
}

TEST(PosixSystem, SetsALineWithoutWaitingForWhatIsOnItsWayOut) {
    const FreshTerminal terminal;
    const int line = ::open(terminal.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    const std::vector<std::uint8_t> bytes(1U << 20U);
    std::thread writer{[&] { EXPECT_EQ(::write(line, bytes.data(), bytes.size()), std::ssize(bytes)); }};
    // The device takes nothing, so that the write does not end.
    pollfd room{.fd = line, .events = POLLOUT, .revents = 0};
    EXPECT_TRUE(eventually([&] { return ::poll(&room, 1, 0) == 0; }));
    std::atomic<bool> isSet = false;
    std::thread setter{[&] {
        termios attributes{};
        EXPECT_TRUE(posix.lineAttributes(line, attributes));
        EXPECT_TRUE(posix.setLineAttributes(line, attributes));
        isSet = true;
    }};

    EXPECT_TRUE(eventually([&] { return isSet.load(); }));

    EXPECT_EQ(terminal.receive(bytes.size()), bytes);
    writer.join();
    setter.join();
    ::close(line);
}

}  // namespace
}  // namespace velmorindal
