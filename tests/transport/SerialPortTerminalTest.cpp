#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "LineAttributes.h"
#include "TerminalPortTest.h"
#include "UnhurriedSystem.h"

namespace velmorindal {
namespace {

/// The test decides whether there is room at once; nothing else depends on how much time passes.
class TerminalSystem final : public UnhurriedSystem {
  public:
    Clock::time_point now() override { return now_; }

    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override {
        if (readiness == Readiness::toWrite && !waitsForRoom) {
            now_ = now_.load() + std::chrono::hours{1};
            return false;
        }
        return UnhurriedSystem::wait(descriptor, readiness, until);
    }

    std::atomic<bool> waitsForRoom{true};

  private:
    std::atomic<Clock::time_point> now_{};
};

/// Time passes only where nothing comes: a wait for it ends at once.
class ImpatientSystem final : public PosixSystem {
  public:
    Clock::time_point now() override { return now_; }
    void sleepFor(Clock::duration duration) override { now_ += duration; }
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override {
        const bool ready = PosixSystem::wait(descriptor, readiness, Clock::now());
        now_ = ready ? now_ : until.value();
        return ready;
    }

  private:
    Clock::time_point now_{};
};

termios attributesOf(int descriptor) {
    termios attributes{};
    EXPECT_EQ(::tcgetattr(descriptor, &attributes), 0);
    return attributes;
}

/// Changes the line as another program would: reads are to wait for so many bytes without end.
void demandBytes(int descriptor, cc_t count) {
    termios attributes = attributesOf(descriptor);
    attributes.c_cc[VMIN] = count;
    attributes.c_cc[VTIME] = 0;
    EXPECT_EQ(::tcsetattr(descriptor, TCSANOW, &attributes), 0);
}

using SerialPortOnAFreshTerminal = TerminalPortTest;

/// An open port on a device that the test plays.
class SerialPortOnATerminal : public testing::Test {
  protected:
    SerialPortOnATerminal() {
        port.openPort();
        port.setSettings(dongleSettings(2));
    }

    void TearDown() override {
        port.closePort();
        ::close(foreign);
    }

    /// Writes until nothing more is taken. @returns how many bytes were.
    std::size_t fillTheLine() {
        system.waitsForRoom = false;
        const ByteBuffer frame(12, 0x63);
        std::size_t taken = 0;
        std::ptrdiff_t count = 0;
        // The last room takes a part of a frame.
        while ((count = port.writeData(frame)) > 0) {
            taken += static_cast<std::size_t>(count);
        }
        EXPECT_EQ(count, -1);
        system.waitsForRoom = true;
        return taken;
    }

    TerminalSystem system;
    FreshTerminal device;
    /// Another program's, from before the port was opened.
    int foreign = ::open(device.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    SerialPort port{device.path(), system};
};

TEST_F(SerialPortOnATerminal, CarriesEveryByteBothWaysUnchanged) {
    device.send(everyByte());
    EXPECT_EQ(port.readData(256), everyByte());

    EXPECT_EQ(port.writeData(everyByte()), 256);
    EXPECT_EQ(device.receive(256), everyByte());
}

TEST_F(SerialPortOnATerminal, TakesAFrameOnceThereIsRoomAgainOnAFullLine) {
    const std::size_t taken = fillTheLine();
    EXPECT_GT(taken, 1000U);

    std::thread reader{[this, taken] { EXPECT_EQ(device.receive(taken).size(), taken); }};
    EXPECT_EQ(port.writeData(ByteBuffer(12, 0x63)), 12);
    reader.join();
}

TEST_F(SerialPortOnATerminal, ClosesWithoutWaitingForADeviceThatTakesNothing) {
    const int descriptor = port.fileDescriptor().value();
    fillTheLine();

    port.closePort();

    EXPECT_TRUE(eventually([&] { return !isOpen(descriptor); }));
}

TEST_F(SerialPortOnATerminal, ThrowsFromEveryReadOnceTheDeviceHasVanished) {
    ByteBuffer buffer(4);
    device.unplug();

    EXPECT_EQ(errorOf([&] { port.readBytes(buffer); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readData(4); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readString(4); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readUntilChar('x'); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readByte(); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readChar(); }), PortError::deviceNotConnected);
}

TEST_F(SerialPortOnATerminal, DoesNotLookForAVanishedDeviceWhenItWrites) {
    device.unplug();

    EXPECT_EQ(port.writeData(ByteBuffer{0x63, 0x62, 0x76, 0x00}), -1);
}

TEST_F(SerialPortOnATerminal, PutsBackWhatAnotherProgramHasChanged) {
    const termios before = attributesOf(foreign);
    demandBytes(foreign, 1);

    port.renewSettings();

    EXPECT_TRUE(sameAttributes(attributesOf(foreign), before));
}

TEST_F(SerialPortOnATerminal, ReadsWhatHasArrivedThoughAnotherProgramWantsMoreBytesAtOnce) {
    demandBytes(foreign, 10);
    device.send(ByteBuffer{0x72, 0x62, 0x76, 0x00});

    EXPECT_EQ(port.readData(4), (ByteBuffer{0x72, 0x62, 0x76, 0x00}));
}

TEST(SerialPortOnASharedTerminal, NoReadWaitsPastItsDeadlineWhateverAnotherProgramMakesOfTheLine) {
    ImpatientSystem system;
    const FreshTerminal device;
    const int foreign = ::open(device.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    SerialPort port{device.path(), system};
    port.openPort();
    port.setSettings(dongleSettings(1));
    demandBytes(foreign, 1);

    // With these attributes a read that waits inside the system would never return.
    EXPECT_EQ(port.readData(4), ByteBuffer{});
    EXPECT_EQ(system.now().time_since_epoch(), std::chrono::seconds{1});

    port.closePort();
    ::close(foreign);
}

TEST_F(SerialPortOnAFreshTerminal, EchoesNothingToADeviceThatSendsRightAfterTheOpen) {
    port.openPort();

    // What was read has passed the place where an echo is made, and an echo would come before an answer. A
    // line that is edited gives nothing away before its end.
    terminal.send(ByteBuffer{0x72, '\n'});
    EXPECT_EQ(port.readLine(), "r");
    EXPECT_EQ(port.writeData(ByteBuffer{0x63}), 1);
    EXPECT_EQ(terminal.receive(1), (ByteBuffer{0x63}));
}

TEST(SerialPortEcho, IsOffWhenTheSystemReturnsTheDescriptor) {
    const FreshTerminal device;
    const int descriptor = posix.openExclusively(device.path(), O_RDWR, {});

    EXPECT_EQ(attributesOf(descriptor).c_lflag & (ICANON | ECHO | ECHOE | ISIG), 0U);
    ::close(descriptor);
}

TEST_F(SerialPortOnAFreshTerminal, ForOneDirectionPassesOnWhatTheSystemSaysToTheOther) {
    ByteBuffer buffer(4);

    port.openPort(true, false);
    EXPECT_EQ(port.writeBytes(buffer), -1);
    port.closePort();

    port.openPort(false, true);
    EXPECT_EQ(port.readBytes(buffer), -1);
}

TEST(SerialPortOnAFile, TakesEveryLinkCountButOneForAVanishedDevice) {
    const std::string path = testing::TempDir() + "velmorindal-file-" + std::to_string(::getpid());
    const int file = ::open(path.c_str(), O_CREAT | O_TRUNC | O_RDWR | O_CLOEXEC, 0600);
    ASSERT_EQ(::write(file, "ab", 2), 2);
    ::close(file);
    UnhurriedSystem system;
    SerialPort port{path, system};
    port.openPort();
    port.setSettings(dongleSettings(1));

    std::filesystem::create_hard_link(path, path + "-second");
    EXPECT_EQ(errorOf([&] { port.readData(2); }), PortError::deviceNotConnected);

    std::filesystem::remove(path + "-second");
    EXPECT_EQ(port.readData(2), (ByteBuffer{'a', 'b'}));
    EXPECT_EQ(port.writeData(ByteBuffer{'c', 'd'}), 2);

    std::filesystem::remove(path);
    EXPECT_EQ(errorOf([&] { port.readData(2); }), PortError::deviceNotConnected);
    port.closePort();
}

}  // namespace
}  // namespace velmorindal
