#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

#include "VirtualPortTest.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;

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

/// Reads wait two tenths of a second each and two seconds in all, and writes two seconds.
class SerialPortOnVirtualTime : public VirtualPortTest {
  protected:
    SerialPortOnVirtualTime() {
        port.openPort();
        port.setSettings(dongleSettings(2));
    }

    const ByteBuffer frame = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
};

TEST_F(SerialPortOnVirtualTime, ReadsForNoBytesLeaveWhatHasArrived) {
    send({0x72});

    EXPECT_EQ(port.readData(0), ByteBuffer{});
    EXPECT_EQ(port.readData(1), (ByteBuffer{0x72}));
}

TEST_F(SerialPortOnVirtualTime, ReadsOnceForAtMostTheBytesThatFit) {
    send({0x72, 0x62, 0x76, 0x01});
    ByteBuffer buffer(3);

    EXPECT_EQ(port.readBytes(buffer), 3);
    EXPECT_EQ(buffer, (ByteBuffer{0x72, 0x62, 0x76}));
    EXPECT_EQ(port.readBytes(buffer), 1);
    EXPECT_EQ(buffer[0], 0x01);
    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.readBytes(buffer), 0); }), 0.2);
}

TEST_F(SerialPortOnVirtualTime, ReadsWaitAsBeforeAfterAWrite) {
    EXPECT_EQ(port.writeData(ByteBuffer{0x63}), 1);
    ByteBuffer buffer(1);

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.readBytes(buffer), 0); }), 0.2);
}

TEST_F(SerialPortOnVirtualTime, OneReadWaitsForItsFirstByteWithoutEndWhereOneIsTheMinimum) {
    SerialSettings settings = dongleSettings(2);
    settings.minimumBytesToRead = 1;
    port.setSettings(settings);
    line.sendAt(1000s, {0x72});
    ByteBuffer buffer(1);

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.readBytes(buffer), 1); }), 1000.0);
}

TEST_F(SerialPortOnVirtualTime, LeavesBytesBeyondTheLengthForTheNextRead) {
    send({1, 2, 3, 4, 5, 6});

    EXPECT_EQ(port.readData(4), (ByteBuffer{1, 2, 3, 4}));
    EXPECT_EQ(port.readData(2), (ByteBuffer{5, 6}));
}

TEST_F(SerialPortOnVirtualTime, ReadsUpToTheMomentOfTheLastByte) {
    line.sendAt(300ms, {0x72, 0x62});
    line.sendAt(1700ms, {0x76, 0x00});

    EXPECT_EQ(secondsTakenBy([&] {
                  EXPECT_EQ(port.readData(4), (ByteBuffer{0x72, 0x62, 0x76, 0x00}));
              }),
              1.7);
}

TEST_F(SerialPortOnVirtualTime, GivesUpOnASilentLineAfterTheTimeoutInWholeSeconds) {
    for (const int minimum : {0, 1}) {
        SerialSettings settings = dongleSettings(2);
        settings.minimumBytesToRead = minimum;
        port.setSettings(settings);
        EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.readData(4), ByteBuffer{}); }), 2.0) << minimum;
    }
}

TEST_F(SerialPortOnVirtualTime, KeepsWhatArrivedBeforeTheDeadline) {
    line.sendAt(1999ms, {0x72, 0x62});
    line.sendAt(2001ms, {0x76, 0x00});

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.readData(4), (ByteBuffer{0x72, 0x62})); }), 2.0);
    EXPECT_EQ(port.readData(2), (ByteBuffer{0x76, 0x00})) << "what came too late is there for the next read";
}

TEST_F(SerialPortOnVirtualTime, ReadsWithoutADeadlineWhereThereIsNoTimeout) {
    port.setSettings(dongleSettings(0));
    line.sendAt(500s, {0x72});
    line.sendAt(1000s, {0x62});

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.readData(2), (ByteBuffer{0x72, 0x62})); }), 1000.0);
}

TEST_F(SerialPortOnVirtualTime, WaitsForTheAnswerToAWriteBeforeItReads) {
    send({0x72});
    EXPECT_EQ(port.readData(1), ByteBuffer{0x72});
    EXPECT_EQ(port.writeData(ByteBuffer{0x63}), 1);
    const std::size_t before = line.reads();
    line.sendAt(scheduler.now() + 10ms, {0x62});

    EXPECT_EQ(port.readData(1), ByteBuffer{0x62});

    EXPECT_EQ(line.reads() - before, 1U);
}

TEST_F(SerialPortOnVirtualTime, RestsBetweenReadsThatBringNothingAtOnce) {
    for (const auto& [result, error] : {std::pair{0, 0}, std::pair{-1, EIO}, std::pair{-1, EINTR}}) {
        line.readAtOnce(result, error);
        const std::size_t before = line.reads();

        EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.readData(4), ByteBuffer{}); }), 2.0);
        EXPECT_EQ(line.reads() - before, 400U) << "one every 5 ms";
    }
}

TEST_F(SerialPortOnVirtualTime, ThrowsFromAReadWhenTheDeviceVanishesMeanwhile) {
    scheduler.start([this] {
        system.sleepFor(700ms);
        line.vanish();
    });

    EXPECT_EQ(
        secondsTakenBy([&] { EXPECT_EQ(errorOf([&] { port.readData(4); }), PortError::deviceNotConnected); }),
        0.8)
        << "at the next of its reads, of two tenths of a second each";
}

TEST_F(SerialPortOnVirtualTime, ThrowsFromAReadWhenThePortIsClosedMeanwhile) {
    scheduler.start([this] {
        system.sleepFor(700ms);
        port.closePort();
    });

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(errorOf([&] { port.readData(4); }), PortError::mustBeOpen); }),
              0.8);
}

TEST_F(SerialPortOnVirtualTime, FinishesAFrameThatHalfFitsWhenRoomComesInTime) {
    line.makeRoomAt(0s, 5);
    line.makeRoomAt(1500ms, 7);

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.writeData(frame), 12); }), 1.5);
    EXPECT_EQ(line.written(), frame);
}

TEST_F(SerialPortOnVirtualTime, ReturnsAShortCountOnlyWhenTheTimeHasPassed) {
    for (int tenths = 3; tenths <= 21; tenths += 3) {
        line.makeRoomAt(tenths * 100ms, 1);
    }

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.writeData(frame), 6); }), 2.0);
}

TEST_F(SerialPortOnVirtualTime, ReturnsMinusOneWhenNotOneByteWasTakenInTime) {
    line.makeRoomAt(2001ms, 12);

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.writeData(frame), -1); }), 2.0);
    EXPECT_EQ(line.written(), ByteBuffer{});
}

TEST_F(SerialPortOnVirtualTime, WaitsForRoomWithoutEndWhereThereIsNoTimeout) {
    port.setSettings(dongleSettings(0));
    line.makeRoomAt(1000s, 12);

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.writeData(frame), 12); }), 1000.0);
}

TEST_F(SerialPortOnVirtualTime, ReturnsMinusOneAtOnceWhenTheSystemRefusesTheFirstByte) {
    line.failWrite(EIO);

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.writeData(frame), -1); }), 0.0);
}

TEST_F(SerialPortOnVirtualTime, ReturnsWhatWasTakenBeforeTheSystemRefusedMore) {
    line.makeRoomAt(0s, 5);
    line.makeRoomAt(1s, 5);
    line.failWrite(EIO, 1);

    EXPECT_EQ(port.writeData(frame), 5);
}

TEST_F(SerialPortOnVirtualTime, WritesOnAfterASignalHasInterruptedTheWrite) {
    line.failWrite(EINTR);

    EXPECT_EQ(port.writeData(frame), 12);
    EXPECT_EQ(line.written(), frame);
}

}  // namespace
}  // namespace velmorindal
