#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <optional>

#include "InsideWait.h"
#include "TerminalPortTest.h"
#include "UnhurriedSystem.h"

namespace velmorindal {
namespace {

/// Notes that a thread has come to wait for a line.
class WaitingSystem final : public UnhurriedSystem {
  public:
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override {
        hasComeToWait = true;
        return UnhurriedSystem::wait(descriptor, readiness, waitsForTheLineAlone ? std::nullopt : until);
    }

    std::atomic<bool> hasComeToWait{false};
    /// However short a wait is to be.
    std::atomic<bool> waitsForTheLineAlone{false};
};

/// A thread that is given a port to read from.
class Reader {
  public:
    explicit Reader(SerialPort& port)
        : thread_{[this, &port] {
              threadId_ = ::gettid();
              outcome_ = errorOf([&] { port.readData(4); });
          }} {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    ~Reader() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    bool isWaiting() const { return isInsideWait(threadId_); }

    /// Waits for the thread's end. @returns what ended its read, if it was an error.
    std::optional<PortError> outcome() {
        thread_.join();
        return outcome_;
    }

  private:
    std::atomic<pid_t> threadId_{0};
    std::optional<PortError> outcome_;
    std::thread thread_;
};

using SerialPortThreads = TerminalPortTest;

/// A port whose reads wait for a byte however long it takes.
class SerialPortUnderAReader : public testing::Test {
  protected:
    SerialPortUnderAReader() {
        port.openPort();
        SerialSettings settings = dongleSettings(0);
        settings.minimumBytesToRead = 1;
        port.setSettings(settings);
    }

    void TearDown() override { port.closePort(); }

    bool readerComesToWait(const Reader& reader) {
        return eventually([&] { return system.hasComeToWait && reader.isWaiting(); });
    }

    WaitingSystem system;
    FreshTerminal device;
    SerialPort port{device.path(), system};
};

TEST_F(SerialPortUnderAReader, KeepsTheDescriptorsNumberFromOtherFilesUntilTheReaderIsOut) {
    system.waitsForTheLineAlone = true;
    const int descriptor = port.fileDescriptor().value();
    Reader reader{port};
    ASSERT_TRUE(readerComesToWait(reader));

    port.closePort();

    EXPECT_EQ(port.fileDescriptor(), std::nullopt);
    EXPECT_TRUE(isOpen(descriptor));
    int exclusive = 1;
    EXPECT_EQ(::ioctl(descriptor, TIOCGEXCL, &exclusive), 0);
    EXPECT_EQ(exclusive, 0) << "the exclusive use ends at once";

    device.send(ByteBuffer{0x72});
    EXPECT_EQ(reader.outcome(), PortError::mustBeOpen);
    EXPECT_FALSE(isOpen(descriptor));
}

TEST_F(SerialPortUnderAReader, ThrowsInTheReaderWhenTheDeviceVanishes) {
    Reader reader{port};
    ASSERT_TRUE(readerComesToWait(reader));

    device.unplug();

    EXPECT_EQ(reader.outcome(), PortError::deviceNotConnected);
}

TEST_F(SerialPortThreads, CloseAPortUnderItsReaderRepeatedlyWithoutLosingADescriptor) {
    const auto before = openDescriptors();

    for (int round = 0; round < 200; ++round) {
        port.openPort();
        port.setSettings(dongleSettings(0));
        Reader reader{port};
        std::thread secondCloser{[this] { port.closePort(); }};
        port.closePort();
        secondCloser.join();
        ASSERT_EQ(reader.outcome(), PortError::mustBeOpen);
        ASSERT_EQ(port.fileDescriptor(), std::nullopt);
    }

    EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace velmorindal
