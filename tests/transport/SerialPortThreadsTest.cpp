#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "transport/FreshTerminal.h"
#include "transport/SerialPort.h"
#include "transport/SerialPortTesting.h"

namespace velmorindal {
namespace {

template <typename Integer>
std::string hexadecimal(Integer value) {
    std::array<char, 32> digits{};
    std::to_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return std::string{"0x"} + digits.data();
}

/// A thread that is given a port to read from.
class Reader {
  public:
    Reader(SerialPort& port, std::size_t length)
        : descriptor_{port.fileDescriptor().value()}, thread_{[this, &port, length] {
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

    /// Waits until the thread is inside the system's read of the port's descriptor, asking for `count` bytes.
    bool comesToReadFor(std::size_t count) const {
        return comesTrue([this, count] { return isInsideReadFor(count); });
    }

    void interrupt(int signal) { ::pthread_kill(thread_.native_handle(), signal); }

    /// Waits for the thread's end. @returns what ended its read, if it was an error.
    std::optional<PortError> outcome() {
        thread_.join();
        return outcome_;
    }

    const ByteBuffer& bytes() const { return bytes_; }

  private:
    /// The system tells which call a thread is in: its number, then its arguments, the buffer's address being
    /// the second.
    bool isInsideReadFor(std::size_t count) const {
        std::ifstream file{"/proc/self/task/" + std::to_string(threadId_) + "/syscall"};
        std::string call;
        std::string descriptor;
        std::string address;
        std::string size;
        file >> call >> descriptor >> address >> size;
        return call == std::to_string(SYS_read) && descriptor == hexadecimal(descriptor_) &&
               size == hexadecimal(count);
    }

    const int descriptor_;
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

    FreshTerminal device;
    SerialPort port{device.path()};
};

TEST_F(SerialPortUnderAReader, GathersBytesThatArriveInPiecesWithoutADeadline) {
    Reader reader{port, 4};

    ASSERT_TRUE(reader.comesToReadFor(4));
    device.send(ByteBuffer{0x72});
    ASSERT_TRUE(reader.comesToReadFor(3));
    device.send(ByteBuffer{0x62, 0x76});
    ASSERT_TRUE(reader.comesToReadFor(1));
    device.send(ByteBuffer{0x01});

    EXPECT_EQ(reader.outcome(), std::nullopt);
    EXPECT_EQ(reader.bytes(), (ByteBuffer{0x72, 0x62, 0x76, 0x01}));
}

TEST_F(SerialPortUnderAReader, EndsTheReaderPromptlyWhenItIsClosed) {
    port.setSettings(dongleSettings(10));
    const int descriptor = port.fileDescriptor().value();
    Reader reader{port, 4};
    ASSERT_TRUE(reader.comesToReadFor(4));
    const auto start = std::chrono::steady_clock::now();

    port.closePort();

    EXPECT_EQ(port.fileDescriptor(), std::nullopt);
    EXPECT_EQ(reader.outcome(), PortError::mustBeOpen) << "and not the deadline";
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds{9});
    EXPECT_FALSE(isOpen(descriptor));
}

TEST_F(SerialPortUnderAReader, KeepsTheDescriptorsNumberFromOtherFilesUntilTheReaderIsOut) {
    const int descriptor = port.fileDescriptor().value();
    Reader reader{port, 4};
    ASSERT_TRUE(reader.comesToReadFor(4));

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
    ASSERT_TRUE(reader.comesToReadFor(4));

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
    ASSERT_TRUE(reader.comesToReadFor(2));

    reader.interrupt(SIGUSR1);
    ASSERT_TRUE(comesTrue([] { return signalsTaken > 0; }));
    device.send(ByteBuffer{0x72, 0x62});

    EXPECT_EQ(reader.outcome(), std::nullopt);
    EXPECT_EQ(reader.bytes(), (ByteBuffer{0x72, 0x62}));
    ::sigaction(SIGUSR1, &before, nullptr);
}

TEST(SerialPortThreads, CloseAPortUnderItsReaderTimeAndAgainWithoutLosingADescriptor) {
    const FreshTerminal device;
    SerialPort port{device.path()};
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
