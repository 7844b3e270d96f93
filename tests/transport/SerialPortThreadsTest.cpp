#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <filesystem>
#include <iterator>
#include <optional>

#include "FreshTerminal.h"
#include "InsideWait.h"
#include "SerialPort.h"
#include "SerialPortTesting.h"
#include "UnhurriedSystem.h"

namespace velmorindal {
namespace {

/// Counts how often a thread has come to wait for a line.
class CountingSystem final : public UnhurriedSystem {
  public:
    bool wait(int descriptor, Readiness readiness, std::optional<Clock::time_point> until) override {
        ++waits;
        return UnhurriedSystem::wait(descriptor, readiness, waitsForTheLineAlone ? std::nullopt : until);
    }

    std::atomic<int> waits{0};
    /// However short a wait is to be.
    std::atomic<bool> waitsForTheLineAlone{false};
};

/// A thread that is given a port to read from.
class Reader {
  public:
    Reader(SerialPort& port, std::size_t length)
        : thread_{[this, &port, length] {
              threadId_ = ::gettid();
              outcome_ = errorOf([&] { bytes_ = port.readData(length); });
          }} {}
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    ~Reader() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    bool isWaiting() const { return isInsideWait(threadId_); }

    void interrupt(int signal) { ::pthread_kill(thread_.native_handle(), signal); }

    /// Waits for the thread's end. @returns what ended its read, if it was an error.
    std::optional<PortError> outcome() {
        thread_.join();
        return outcome_;
    }

    const ByteBuffer& bytes() const { return bytes_; }

  private:
    std::atomic<pid_t> threadId_{0};
    std::optional<PortError> outcome_;
    ByteBuffer bytes_;
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

    /// Waits until the reader of the port waits for the line for that many times.
    bool readerComesToWait(const Reader& reader, int times = 1) {
        return eventually([&] { return system.waits >= times && reader.isWaiting(); });
    }

    CountingSystem system;
    FreshTerminal device;
    SerialPort port{device.path(), system};
};

TEST_F(SerialPortUnderAReader, GathersBytesThatArriveInPiecesWithoutADeadline) {
    Reader reader{port, 4};

    ASSERT_TRUE(readerComesToWait(reader, 1));
    device.send(ByteBuffer{0x72});
    ASSERT_TRUE(readerComesToWait(reader, 2));
    device.send(ByteBuffer{0x62, 0x76});
    ASSERT_TRUE(readerComesToWait(reader, 3));
    device.send(ByteBuffer{0x01});

    EXPECT_EQ(reader.outcome(), std::nullopt);
    EXPECT_EQ(reader.bytes(), (ByteBuffer{0x72, 0x62, 0x76, 0x01}));
}

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

TEST_F(SerialPortUnderAReader, ThrowsInTheReaderWhenTheDeviceVanishes) {
    Reader reader{port, 4};
    ASSERT_TRUE(readerComesToWait(reader));

    device.unplug();

    EXPECT_EQ(reader.outcome(), PortError::deviceNotConnected);
}

TEST_F(SerialPortUnderAReader, ReadsOnAfterASignalHasInterruptedTheRead) {
    static std::atomic<int> signalsTaken{0};
    struct sigaction interrupting {};
    struct sigaction before {};
    interrupting.sa_handler = [](int) { ++signalsTaken; };
    ::sigaction(SIGUSR1, &interrupting, &before);
    Reader reader{port, 2};
    ASSERT_TRUE(readerComesToWait(reader));

    reader.interrupt(SIGUSR1);
    ASSERT_TRUE(eventually([] { return signalsTaken > 0; }));
    device.send(ByteBuffer{0x72, 0x62});

    EXPECT_EQ(reader.outcome(), std::nullopt);
    EXPECT_EQ(reader.bytes(), (ByteBuffer{0x72, 0x62}));
    ::sigaction(SIGUSR1, &before, nullptr);
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
