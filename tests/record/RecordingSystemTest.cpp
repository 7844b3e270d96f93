#include "RecordingSystem.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "ConnectionTest.h"
#include "ForkedChild.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;
using Type = VelmorindalMessageType;

/// A line of a virtual system whose every step is recorded.
class RecordingSystemTest : public ConnectionTest {
  protected:
    /// An open port to the dongle.
    std::unique_ptr<SerialPort> openedPort() {
        auto port = std::make_unique<SerialPort>(path(), recording);
        port->openPort();
        port->setSettings(dongleLine);
        return port;
    }
    /// The lines after the heading.
    std::string lines() const {
        const std::string all = contentsOf(file);
        EXPECT_THAT(all, StartsWith("Velmorindal record 1\n"));
        return all.substr(std::min(all.size(), all.find('\n') + 1));
    }

    TemporaryDirectory place;
    const fs::path file = place.path() / "record";
    RecordingSystem recording{system, file};
};

TEST_F(RecordingSystemTest, EveryFrameIsALineWithItsTimePortAndDirection) {
    const auto port = openedPort();
    recording.sleepFor(std::chrono::milliseconds{1234});
    port->writeData(ByteBuffer{0x63, 0x62, 0x73, 0x00});
    EXPECT_EQ(port->readData(5).size(), 5U);
    port->closePort();
    // Five bytes take 434 microseconds.
    EXPECT_EQ(lines(),
              "0.000 1 open\n"
              "1.234 1 > 63 62 73 00\n"
              "1.234 1 < 72 62 73 01 01\n"
              "1.234 1 close\n");
}

TEST_F(RecordingSystemTest, AFrameThatIsReadInPartsIsOneLine) {
    const auto port = openedPort();
    port->writeData(ByteBuffer{0x63, 0x62, 0x76, 0x00});
    EXPECT_EQ(port->readData(4).size(), 4U);
    EXPECT_EQ(lines(), "0.000 1 open\n0.000 1 > 63 62 76 00\n");
    EXPECT_EQ(port->readData(16).size(), 16U);
    EXPECT_EQ(lines(),
              "0.000 1 open\n"
              "0.000 1 > 63 62 76 00\n"
              "0.001 1 < 72 62 76 10 56 65 6c 6d 6f 72 69 6e 64 61 6c 20 31 2e 31 4d\n");
    port->closePort();
}

TEST_F(RecordingSystemTest, APartialFrameIsALineOnceAReadHasTimedOut) {
    dongle.onFirst(Type::status, Fault::halfAHeader());
    const auto port = openedPort();
    port->writeData(ByteBuffer{0x63, 0x62, 0x73, 0x00});
    EXPECT_EQ(port->readData(5).size(), 2U);
    EXPECT_THAT(lines(), HasSubstr("0.000 1 < 72 62\n"));
    port->closePort();
}

TEST_F(RecordingSystemTest, APartialFrameIsALineBeforeTheOtherSideSpeaks) {
    dongle.onFirst(Type::status, Fault::halfAHeader());
    const auto port = openedPort();
    port->writeData(ByteBuffer{0x63, 0x62, 0x73, 0x00});
    EXPECT_EQ(port->readData(2).size(), 2U);
    port->writeData(ByteBuffer{0x63, 0x62});
    port->closePort();
    EXPECT_EQ(lines(),
              "0.000 1 open\n"
              "0.000 1 > 63 62 73 00\n"
              "0.000 1 < 72 62\n"
              "0.000 1 > 63 62\n"
              "0.000 1 close\n");
}

TEST_F(RecordingSystemTest, APartialFrameIsALineBeforeAnotherPortIsOpenedOrWrittenTo) {
    InProcessDongle second{system, directory.path(), {.name = "cu.usbmodem-second"}};
    const auto port = openedPort();
    SerialPort other{second.path().string(), recording};
    port->writeData(ByteBuffer{0x63, 0x62});
    other.openPort();
    EXPECT_EQ(lines(), "0.000 1 open\n0.000 1 > 63 62\n0.000 2 open\n");
    port->writeData(ByteBuffer{0x63});
    other.writeData(ByteBuffer{0x62});
    port->closePort();
    other.closePort();
    EXPECT_EQ(lines(),
              "0.000 1 open\n"
              "0.000 1 > 63 62\n"
              "0.000 2 open\n"
              "0.000 1 > 63\n"
              "0.000 2 > 62\n"
              "0.000 1 close\n"
              "0.000 2 close\n");
}

TEST_F(RecordingSystemTest, APartialFrameIsALineBeforeTheDescriptorIsClosed) {
    const int descriptor = recording.openExclusively(path(), O_RDWR, {});
    EXPECT_EQ(recording.write(descriptor, ByteBuffer{0x63, 0x62}), 2);
    recording.endExclusiveUse(descriptor);
    EXPECT_EQ(lines(), "0.000 1 open\n0.000 1 > 63 62\n");
    recording.close(descriptor);
}

TEST_F(RecordingSystemTest, TheEndOfAnExclusiveUseIsPassedOn) {
    class Noting final : public VirtualSystem {
      public:
        using VirtualSystem::VirtualSystem;
        void endExclusiveUse(int descriptor) override { ended = descriptor; }
        int ended = -1;
    };
    Noting noting{scheduler};

    RecordingSystem{noting, place.path() / "another"}.endExclusiveUse(7);

    EXPECT_EQ(noting.ended, 7);
}

TEST_F(RecordingSystemTest, APortKeepsItsNumberAndItsNameIsNotWritten) {
    InProcessDongle second{system, directory.path(), {.name = "cu.usbmodem-second"}};
    for (const std::string& node : {path(), second.path().string(), path()}) {
        SerialPort port{node, recording};
        port.openPort();
        port.closePort();
    }
    EXPECT_EQ(lines(),
              "0.000 1 open\n0.000 1 close\n0.000 2 open\n0.000 2 close\n0.000 1 open\n0.000 1 close\n");
}

TEST_F(RecordingSystemTest, ARefusedOpenIsALineAndKeepsItsReason) {
    system.refuse(path(), EACCES);
    SerialPort port{path(), recording};
    try {
        port.openPort();
        ADD_FAILURE() << "It was opened.";
    } catch (const PortException& exception) {
        EXPECT_EQ(exception.systemError, EACCES);
    }
    EXPECT_EQ(lines(), "0.000 1 refused\n");
}

TEST_F(RecordingSystemTest, TheReasonOfACallIsKeptWhenTheRecordEndsAtIt) {
    const fs::path pipe = place.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_NE(std::signal(SIGPIPE, SIG_IGN), SIG_ERR);
    RecordingSystem piped{system, pipe};
    ::close(reader);
    system.refuse(path(), EACCES);
    PrintedLines errors{PrintStream::standardError};
    EXPECT_EQ(piped.openExclusively(path(), O_RDWR, {}), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_THAT(errors.take(), HasSubstr("ends here: Broken pipe."));
}

TEST_F(RecordingSystemTest, ADeviceThatIsPulledOutIsALineOnce) {
    const auto port = openedPort();
    dongle.unplug();
    EXPECT_THROW(port->readData(1), PortException);
    EXPECT_THROW(port->readData(1), PortException);
    port->closePort();
    EXPECT_EQ(lines(), "0.000 1 open\n0.000 1 lost\n0.000 1 close\n");
}

TEST_F(RecordingSystemTest, ADescriptorThatCannotBeAskedAnyMoreIsLost) {
    const int descriptor = recording.openExclusively(path(), O_RDWR, {});
    system.close(descriptor);
    EXPECT_EQ(recording.linkCount(descriptor), std::nullopt);
    EXPECT_EQ(lines(), "0.000 1 open\n0.000 1 lost\n");
}

TEST_F(RecordingSystemTest, AShortWriteIsRecordedAsFarAsItWent) {
    system.cutWrite(Type::status, 1, 3);
    const auto port = openedPort();
    EXPECT_EQ(port->writeData(ByteBuffer{0x63, 0x62, 0x73, 0x00}), 3);
    port->closePort();
    EXPECT_EQ(lines(), "0.000 1 open\n0.000 1 > 63 62 73\n2.000 1 close\n");
}

TEST_F(RecordingSystemTest, ARecordThatCannotBeMadeIsRefusedWithItsNameAndTheReason) {
    try {
        const RecordingSystem none{system, place.path() / "missing" / "record"};
        ADD_FAILURE() << "It was made.";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.what(), "cannot write the record " + (place.path() / "missing" / "record").string() +
                                    ": No such file or directory");
    }
}

TEST_F(RecordingSystemTest, APipeThatNobodyReadsIsRefusedAndNotWaitedFor) {
    const fs::path pipe = place.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_THROW((RecordingSystem{system, pipe}), std::system_error);
}

TEST_F(RecordingSystemTest, NoProgramThatIsStartedGetsTheRecord) {
    for (const auto& entry : fs::directory_iterator{"/proc/self/fd"}) {
        std::error_code gone;
        if (fs::read_symlink(entry.path(), gone) == file) {
            EXPECT_NE(::fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC, 0);
            return;
        }
    }
    ADD_FAILURE() << "The record is not open.";
}

TEST_F(RecordingSystemTest, AnEarlierFileIsReplaced) {
    const fs::path earlier = place.path() / "earlier";
    std::ofstream{earlier} << std::string(1000, 'x');
    const RecordingSystem again{system, earlier};
    EXPECT_EQ(contentsOf(earlier), "Velmorindal record 1\n");
}

TEST_F(RecordingSystemTest, AFullDiskEndsTheRecordWithOneLineAndNotTheSession) {
    PrintedLines errors{PrintStream::standardError};
    RecordingSystem full{system, "/dev/full"};
    PrintedLines output;
    VelmorindalSwitch model{dispatch, full, {.directory = directory.path().string() + "/"}};
    EXPECT_TRUE(dispatch.finish([&] { return model.connect(); }));
    model.disconnect(false);
    EXPECT_EQ(errors.take(),
              "The record /dev/full ends here: No space left on device. Everything else goes on.\n");
}

TEST_F(RecordingSystemTest, ARecordThatRunsOutOfRoomEndsWithAWholeLine) {
    const fs::path limited = place.path() / "limited";
    const int status = inChild([&] {
        const rlimit limit{.rlim_cur = 60, .rlim_max = 60};
        PrintedLines errors{PrintStream::standardError};
        RecordFile record{limited};
        if (std::signal(SIGXFSZ, SIG_IGN) == SIG_ERR || ::setrlimit(RLIMIT_FSIZE, &limit) != 0) {
            return 1;
        }
        for (int line = 0; line < 10; ++line) {
            record.append("a line of 20 letters");
        }
        const std::string text = errors.take();
        return text == "The record " + limited.string() +
                           " ends here: File too large. Everything else goes on.\n"
                   ? 0
                   : 2;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contentsOf(limited), "a line of 20 letters\na line of 20 letters\n");
}

}  // namespace
}  // namespace velmorindal
