#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "Record.h"
#include "RecordingSystem.h"
#include "ReplayedLine.h"
#include "SessionTest.h"

namespace velmorindal {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using Type = VelmorindalMessageType;

/// A model on virtual time whose line is recorded.
struct RecordedWorld : VirtualWorld {
    explicit RecordedWorld(const fs::path& file) : recording{system, file} {}
    ~RecordedWorld() { end(); }

    std::size_t timesSent(Type type) const {
        const auto frames = system.frames();
        return static_cast<std::size_t>(std::ranges::count_if(
            frames, [type](const ByteBuffer& frame) { return frame[2] == static_cast<std::uint8_t>(type); }));
    }

    /// Connects, looks at both displays, sets everything and saves.
    void runWhole() {
        const auto shownClarity = [this] { return velmorindal.detectedClarity.get() != 0.0; };
        const auto fifthQuestion = [this] { return timesSent(Type::lastHumDuration) == 5; };
        EXPECT_TRUE(dispatch.finish([this] { return velmorindal.connect(); }));
        velmorindal.beginClarityPolling();
        EXPECT_TRUE(dispatch.runMainWorkUntil(shownClarity));
        velmorindal.stopPollingAndWait();
        velmorindal.beginDurationPolling();
        EXPECT_TRUE(dispatch.runMainWorkUntil(fifthQuestion));
        velmorindal.stopPollingAndWait();
        velmorindal.outputPath = OutputPath::USBKeyboard;
        velmorindal.outputMode = OutputMode::LongShort;
        velmorindal.clarity = 0.75F;
        EXPECT_TRUE(dispatch.finish([this] { return velmorindal.commitSettingsToDevice(); }));
        velmorindal.disconnect(false);
    }

    TemporaryDirectory directory;
    RecordingSystem recording;
    VelmorindalSwitch velmorindal{dispatch, recording, {.directory = directory.path().string() + "/"}};
};

/// The lines of a record without their times.
std::vector<std::string> withoutTimes(const fs::path& file) {
    std::ifstream stream{file};
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line.substr(line.find(' ') + 1));
    }
    return lines;
}

TEST(ReplayedRun, OfAWholeRunIsTheSameToTheByte) {
    const TemporaryDirectory place;
    const fs::path first = place.path() / "first";
    const fs::path second = place.path() / "second";
    std::vector<std::string> published;
    {
        RecordedWorld world{first};
        InProcessDongle dongle{world.system, world.directory.path()};
        world.runWhole();
        published = publishedBy(world.velmorindal);
        EXPECT_EQ(dongle.state().stored, dongle.state().settings);
    }
    const auto ports = eventsByPort(readRecord(first));
    ASSERT_EQ(ports.size(), 1U);
    {
        RecordedWorld world{second};
        const ReplayedLine line{world.system, world.directory.path() / "cu.usbmodem-replayed",
                                ports.begin()->second};
        world.runWhole();
        EXPECT_THAT(line.departures(), IsEmpty());
        EXPECT_TRUE(line.replay().hostIsDone());
        EXPECT_EQ(publishedBy(world.velmorindal), published);
    }
    EXPECT_EQ(withoutTimes(second), withoutTimes(first));
    EXPECT_GT(withoutTimes(first).size(), 40U);
}

TEST(ReplayedRun, OfTheStoredRecordIsTheSameToTheByte) {
    const TemporaryDirectory place;
    const fs::path stored = VELMORINDAL_TEST_SOURCE_DIRECTORY "/data/whole-run.record";
    const auto ports = eventsByPort(readRecord(stored));
    ASSERT_EQ(ports.size(), 1U);
    {
        RecordedWorld world{place.path() / "again"};
        const ReplayedLine line{world.system, world.directory.path() / "cu.usbmodem-replayed",
                                ports.begin()->second};
        world.runWhole();
        EXPECT_THAT(line.departures(), IsEmpty());
        EXPECT_TRUE(line.replay().hostIsDone());
    }
    EXPECT_EQ(withoutTimes(place.path() / "again"), withoutTimes(stored));
}

/// Connects in vain. @returns the text that is left.
std::optional<std::string> failureIn(RecordedWorld& world) {
    EXPECT_FALSE(world.dispatch.finish([&] { return world.velmorindal.connect(); }));
    auto error = world.velmorindal.lastError.get();
    world.velmorindal.disconnect(true);
    return error;
}

TEST(ReplayedRun, OfADeviceThatFailedOrWasPulledOutEndsAsItDid) {
    for (const bool pulledOut : {false, true}) {
        const TemporaryDirectory place;
        std::optional<std::string> error;
        {
            RecordedWorld world{place.path() / "first"};
            InProcessDongle dongle{world.system, world.directory.path()};
            dongle.onFirst(Type::humThresholds,
                           pulledOut ? Fault::unplugBeforeAnswer() : Fault::halfAPayload());
            error = failureIn(world);
        }
        EXPECT_EQ(std::ranges::count(withoutTimes(place.path() / "first"), "1 lost"), pulledOut ? 1 : 0);
        {
            RecordedWorld world{place.path() / "second"};
            const ReplayedLine line{world.system, world.directory.path() / "cu.usbmodem-replayed",
                                    eventsByPort(readRecord(place.path() / "first")).at(1)};
            EXPECT_EQ(failureIn(world), error);
            EXPECT_THAT(line.departures(), IsEmpty());
            EXPECT_EQ(line.replay().isLost(), pulledOut);
        }
        EXPECT_EQ(withoutTimes(place.path() / "second"), withoutTimes(place.path() / "first"));
    }
}

}  // namespace
}  // namespace velmorindal
