#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include "transport/FreshTerminal.h"
#include "transport/SerialPort.h"
#include "transport/SerialPortTesting.h"

namespace velmorindal {
namespace {

using std::chrono::steady_clock;

/// An open port on a device that the test plays.
class SerialPortOnALine : public testing::Test {
  protected:
    SerialPortOnALine() {
        port.openPort();
        port.setSettings(dongleSettings(2));
    }

    void TearDown() override { port.closePort(); }

    /// Writes until nothing is taken for a second. @returns how many bytes were.
    std::size_t fillTheLine() {
        port.setSettings(dongleSettings(1));
        const ByteBuffer frame(12, 0x63);
        std::size_t taken = 0;
        std::ptrdiff_t count = 0;
        // The last room takes a part of a frame.
        while ((count = port.writeData(frame)) > 0) {
            taken += static_cast<std::size_t>(count);
        }
        EXPECT_EQ(count, -1);
        return taken;
    }

    FreshTerminal device;
    SerialPort port{device.path(), posix};
};

TEST(ClosedSerialPort, RefusesEveryReadAndWrite) {
    SerialPort port{"/dev/cu.usbmodem1", posix};
    ByteBuffer buffer(4);

    EXPECT_EQ(errorOf([&] { port.readBytes(buffer); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.readData(4); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.readString(4); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.readUntilChar('x'); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.readLine(); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.readByte(); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.readChar(); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.writeBytes(buffer); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.writeData(buffer); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.writeString("text"); }), PortError::mustBeOpen);
    EXPECT_EQ(errorOf([&] { port.writeChar(U'c'); }), PortError::mustBeOpen);
}

TEST(ClosedSerialPort, ReadsNoBytesAtAllWhenNoneAreAskedFor) {
    SerialPort port{"/dev/cu.usbmodem1", posix};

    EXPECT_EQ(port.readData(0), ByteBuffer{});
}

TEST_F(SerialPortOnALine, ReadsForNoBytesLeaveWhatHasArrived) {
    device.send(ByteBuffer{0x72});

    EXPECT_EQ(port.readData(0), ByteBuffer{});
    EXPECT_EQ(port.readData(1), (ByteBuffer{0x72}));
}

TEST_F(SerialPortOnALine, CarriesEveryByteBothWaysUnchanged) {
    device.send(everyByte());
    EXPECT_EQ(port.readData(256), everyByte());

    EXPECT_EQ(port.writeData(everyByte()), 256);
    EXPECT_EQ(device.receive(256), everyByte());
}

TEST_F(SerialPortOnALine, DoesNotWaitForEverForADeviceThatTakesNothingMore) {
    const auto start = steady_clock::now();
    const std::size_t taken = fillTheLine();
    EXPECT_GT(taken, 1000U);
    EXPECT_GE(steady_clock::now() - start, std::chrono::seconds{1});
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds{20});

    device.receive(taken);
    EXPECT_EQ(port.writeData(ByteBuffer(12, 0x63)), 12) << "room again";
}

TEST_F(SerialPortOnALine, WaitsForRoomThatComesInTime) {
    const std::size_t taken = fillTheLine();
    port.setSettings(dongleSettings(30));
    std::thread reader{[this, taken] { device.receive(taken); }};
    EXPECT_EQ(port.writeData(ByteBuffer(12, 0x63)), 12);
    reader.join();
}

TEST_F(SerialPortOnALine, ReadsWaitAsBeforeAfterAWrite) {
    EXPECT_EQ(port.writeData(ByteBuffer{0x63}), 1);
    ByteBuffer buffer(1);
    const auto start = steady_clock::now();
    EXPECT_EQ(port.readBytes(buffer), 0);
    EXPECT_GE(steady_clock::now() - start, std::chrono::milliseconds{190});
}

TEST_F(SerialPortOnALine, ReadsOnceForAtMostTheBytesThatFit) {
    device.send(ByteBuffer{0x72, 0x62, 0x76, 0x01});
    ByteBuffer buffer(3);

    EXPECT_EQ(port.readBytes(buffer), 3);
    EXPECT_EQ(buffer, (ByteBuffer{0x72, 0x62, 0x76}));
    EXPECT_EQ(port.readBytes(buffer), 1);
    EXPECT_EQ(buffer[0], 0x01);
    EXPECT_EQ(port.readBytes(buffer), 0) << "nothing came within the two tenths of a second of one read";
}

TEST_F(SerialPortOnALine, LeavesBytesBeyondTheLengthForTheNextRead) {
    device.send(ByteBuffer{1, 2, 3, 4, 5, 6});

    EXPECT_EQ(port.readData(4), (ByteBuffer{1, 2, 3, 4}));
    EXPECT_EQ(port.readData(2), (ByteBuffer{5, 6}));
}

TEST_F(SerialPortOnALine, GivesUpOnASilentLineAfterTheTimeoutInWholeSeconds) {
    port.setSettings(dongleSettings(1));
    // A busy machine may be late; it is not late every time.
    auto shortest = steady_clock::duration::max();

    for (int attempt = 0; attempt < 5 && shortest >= std::chrono::milliseconds{1500}; ++attempt) {
        const auto start = steady_clock::now();
        EXPECT_EQ(port.readData(4), ByteBuffer{});
        const auto elapsed = steady_clock::now() - start;
        EXPECT_GE(elapsed, std::chrono::seconds{1});
        shortest = std::min(shortest, elapsed);
    }

    EXPECT_LT(shortest, std::chrono::milliseconds{1500});
}

TEST_F(SerialPortOnALine, KeepsWhatArrivedBeforeTheDeadline) {
    port.setSettings(dongleSettings(1));
    device.send(ByteBuffer{0x72, 0x62});

    EXPECT_EQ(port.readData(4), (ByteBuffer{0x72, 0x62}));
}

TEST_F(SerialPortOnALine, ThrowsFromEveryReadOnceTheDeviceHasVanished) {
    ByteBuffer buffer(4);
    device.unplug();

    EXPECT_EQ(errorOf([&] { port.readBytes(buffer); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readData(4); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readString(4); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readUntilChar('x'); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readByte(); }), PortError::deviceNotConnected);
    EXPECT_EQ(errorOf([&] { port.readChar(); }), PortError::deviceNotConnected);
}

TEST_F(SerialPortOnALine, DoesNotLookForAVanishedDeviceWhenItWrites) {
    device.unplug();

    EXPECT_EQ(port.writeData(ByteBuffer{0x63, 0x62, 0x76, 0x00}), -1);
}

TEST_F(SerialPortOnALine, ClosesAfterTheDeviceHasVanished) {
    device.unplug();

    port.closePort();

    EXPECT_EQ(port.fileDescriptor(), std::nullopt);
}

TEST(SerialPortForOneDirection, PassesOnWhatTheSystemSaysToTheOther) {
    const FreshTerminal device;
    SerialPort port{device.path(), posix};
    ByteBuffer buffer(4);

    port.openPort(true, false);
    EXPECT_EQ(port.writeBytes(buffer), -1);
    port.closePort();

    port.openPort(false, true);
    EXPECT_EQ(port.readBytes(buffer), -1);
    port.closePort();
}

/// A regular file in place of a device node: its reads never wait, and its links can be counted up.
class SerialPortOnAFile : public testing::Test {
  protected:
    SerialPortOnAFile() {
        const int file = ::open(path.c_str(), O_CREAT | O_TRUNC | O_RDWR | O_CLOEXEC, 0600);
        EXPECT_EQ(::write(file, "ab", 2), 2);
        ::close(file);
        port.openPort();
        port.setSettings(dongleSettings(1));
    }

    void TearDown() override {
        port.closePort();
        std::filesystem::remove(path);
    }

    const std::string path = testing::TempDir() + "velmorindal-file-" + std::to_string(::getpid());
    SerialPort port{path, posix};
};

TEST_F(SerialPortOnAFile, ReadsOnAtItsEndUntilTheDeadline) {
    const auto start = steady_clock::now();

    const ByteBuffer bytes = port.readData(4);

    EXPECT_EQ(bytes, (ByteBuffer{'a', 'b'}));
    EXPECT_GE(steady_clock::now() - start, std::chrono::seconds{1});
}

TEST_F(SerialPortOnAFile, TakesEveryLinkCountButOneForAVanishedDevice) {
    std::filesystem::create_hard_link(path, path + "-second");
    EXPECT_EQ(errorOf([&] { port.readData(2); }), PortError::deviceNotConnected);

    std::filesystem::remove(path + "-second");
    EXPECT_EQ(port.readData(2), (ByteBuffer{'a', 'b'}));

    std::filesystem::remove(path);
    EXPECT_EQ(errorOf([&] { port.readData(2); }), PortError::deviceNotConnected);
}

}  // namespace
}  // namespace velmorindal
