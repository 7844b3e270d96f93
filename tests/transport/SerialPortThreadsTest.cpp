#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "FreshTerminal.h"
#include "SerialPort.h"
#include "SerialPortTesting.h"
#include "UnhurriedSystem.h"

namespace velmorindal {
namespace {

/// Notes that a thread has come to wait for a line.
class NotingSystem final : public UnhurriedSystem {
  public:
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override {
        hasWaited = true;
        return UnhurriedSystem::wait(descriptor, readiness, waitsForTheLineAlone ? std::nullopt : until);
    }

    std::atomic<bool> hasWaited{false};
    /// However short a wait is to be.
    std::atomic<bool> waitsForTheLineAlone{false};
};

/// A thread that is given a port to read from.
class Reader {
  public:
    Reader(SerialPort& port, std::size_t length)
        : thread_{[this, &port, length] {
              threadId_ = ::gettid();
              outcome_ = errorOf([&] { port.readData(length); });
          }} {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    ~Reader() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    /// Whether the system says that the thread is asleep in a wait for a line.
    bool isInsideWait() const {
        std::ifstream file{"/proc/self/task/" + std::to_string(threadId_) + "/syscall"};
        long call = -1;
        file >> call;
        return call == SYS_ppoll || call == waitingCall;
    }

    /// Waits for the thread's end. @returns what ended its read, if it was an error.
    std::optional<PortError> outcome() {
        thread_.join();
        return outcome_;
    }

  private:
#ifdef SYS_poll
    static constexpr long waitingCall = SYS_poll;
#else
    static constexpr long waitingCall = SYS_ppoll;
#endif

    std::atomic<pid_t> threadId_{0};
    std::optional<PortError> outcome_;
    std::thread thread_;
};

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

    /// Waits until the reader of the port waits for the line.
    bool readerComesToWait(const Reader& reader) {
        return eventually([&] { return system.hasWaited && reader.isInsideWait(); });
    }

    NotingSystem system;
    FreshTerminal device;
    SerialPort port{device.path(), system};
};

TEST_F(SerialPortUnderAReader, EndsTheReaderAfterItsCurrentReadWhenItIsClosed) {
    port.setSettings(dongleSettings(1));
    const int descriptor = port.fileDescriptor().value();
    Reader reader{port, 4};
    ASSERT_TRUE(readerComesToWait(reader));

    port.closePort();

    EXPECT_EQ(port.fileDescriptor(), std::nullopt);
    EXPECT_EQ(reader.outcome(), PortError::mustBeOpen);
    EXPECT_FALSE(isOpen(descriptor));
}

TEST_F(SerialPortUnderAReader, KeepsTheDescriptorsNumberFromOtherFilesUntilTheReaderIsOut) {
    system.waitsForTheLineAlone = true;
    const int descriptor = port.fileDescriptor().value();
    Reader reader{port, 4};
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

TEST(SerialPortThreads, CloseAPortUnderItsReaderRepeatedlyWithoutLosingADescriptor) {
    const FreshTerminal device;
    SerialPort port{device.path(), posix};
    const auto openDescriptors = [] {
        return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"},
                             std::filesystem::directory_iterator{});
    };
    const auto before = openDescriptors();

    for (int round = 0; round < 200; ++round) {
        port.openPort();
        port.setSettings(dongleSettings(0));
        Reader reader{port, 4};
        std::thread secondCloser{[&port] { port.closePort(); }};
        port.closePort();
        secondCloser.join();
        ASSERT_EQ(reader.outcome(), PortError::mustBeOpen);
        ASSERT_EQ(port.fileDescriptor(), std::nullopt);
    }

    EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace velmorindal
