#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <optional>
#include <utility>
#include <vector>

#include "VirtualDongle.h"
#include "VirtualHost.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::ElementsAre;

const ByteBuffer startStreaming = frame('c', 't', {2});
const ByteBuffer stopStreaming = frame('c', 't', {0});

/// The larger clarity of a report.
float maximumOf(const ByteBuffer& report) {
    const std::uint32_t bits =
        static_cast<std::uint32_t>(report.at(8)) | static_cast<std::uint32_t>(report.at(9)) << 8U |
        static_cast<std::uint32_t>(report.at(10)) << 16U | static_cast<std::uint32_t>(report.at(11)) << 24U;
    return std::bit_cast<float>(bits);
}

class Streaming : public testing::Test, protected VirtualWorld {
  protected:
    void plugIn(const SimulatedDongle::Options& options) {
        dongle_.emplace(system, directory_.path(), options);
        host_.emplace(system, dongle_->path());
    }

    std::vector<float> readReports(std::size_t count) {
        std::vector<float> maxima;
        while (maxima.size() < count) {
            const ByteBuffer report = host_->read(12);
            if (report.size() < 12 || !std::equal(report.begin(), report.begin() + 4, "rbt\x08")) {
                ADD_FAILURE() << "not a report: " << testing::PrintToString(report);
                break;
            }
            maxima.push_back(maximumOf(report));
        }
        return maxima;
    }

    TemporaryDirectory directory_;
    std::optional<InProcessDongle> dongle_;
    std::optional<VirtualHost> host_;
};

TEST_F(Streaming, ReportsFollowTheAcknowledgementOfChannelTwo) {
    plugIn({.reportInterval = 1ms});
    EXPECT_EQ(host_->ask(startStreaming, 5), frame('r', 't', {2}));
    EXPECT_THAT(readReports(3), ElementsAre(0.05F, 0.05F, 0.05F));
}

TEST_F(Streaming, ScriptedClaritiesComeOnceEachThenTheSteadyOne) {
    plugIn({.reportInterval = 1ms});
    dongle_->reportClarity(0.5F);
    dongle_->reportClarities({0.37F, 0.0F, 1.0F});
    host_->ask(startStreaming, 5);
    EXPECT_THAT(readReports(5), ElementsAre(0.37F, 0.0F, 1.0F, 0.5F, 0.5F));
}

TEST_F(Streaming, StopsWithTheAcknowledgementOfAnotherChannel) {
    plugIn({.reportInterval = 1ms});
    host_->ask(startStreaming, 5);
    readReports(1);
    host_->write(stopStreaming);
    ByteBuffer next = host_->read(5);
    while (next != frame('r', 't', {0})) {
        ASSERT_EQ(next, (ByteBuffer{'r', 'b', 't', 8, 0}));
        host_->read(7);
        next = host_->read(5);
    }
    EXPECT_EQ(dongle_->state().autoTuneChannel, 0);
    EXPECT_EQ(host_->ask(query('s'), 5), frame('r', 's', {1}));
}

TEST_F(Streaming, AResetStopsItToo) {
    plugIn({.reportInterval = 1h});
    host_->ask(startStreaming + query('z'), 9);
    EXPECT_EQ(dongle_->state().autoTuneChannel, 0);
}

TEST_F(Streaming, WithoutAnIntervalOnlyTheReportsOfTheTestAreSent) {
    plugIn({.reportInterval = 0us});
    host_->ask(startStreaming, 5);
    dongle_->sendReport(0.37F, 0.25F);
    dongle_->send(frame('r', 's', {9}));
    dongle_->sendReport(0.5F);
    EXPECT_EQ(host_->read(12),
              (ByteBuffer{'r', 'b', 't', 8, 0x00, 0x00, 0x80, 0x3E, 0xA4, 0x70, 0xBD, 0x3E}));
    EXPECT_EQ(host_->read(5), frame('r', 's', {9}));
    EXPECT_THAT(readReports(1), ElementsAre(0.5F));
}

TEST_F(Streaming, AReportOfTheTestMeetsTheFaultOfItsNumberToo) {
    plugIn({.reportInterval = 0us});
    dongle_->onReport(2, Fault::answerWith({1, 2, 3}));
    host_->ask(startStreaming, 5);
    dongle_->sendReport(0.25F);
    dongle_->sendReport(0.5F);
    dongle_->sendReport(0.75F);
    EXPECT_THAT(readReports(1), ElementsAre(0.25F));
    EXPECT_EQ(host_->read(3), (ByteBuffer{1, 2, 3}));
    EXPECT_THAT(readReports(1), ElementsAre(0.75F));
}

TEST_F(Streaming, TheDongleCanBePulledOutInTheMiddleOfAReport) {
    plugIn({.reportInterval = 1ms});
    dongle_->onReport(2, Fault::unplugDuringAnswer());
    host_->ask(startStreaming, 5);
    readReports(1);
    EXPECT_EQ(host_->read(12), (ByteBuffer{'r', 'b', 't', 8, 0, 0, 0, 0}));
    EXPECT_FALSE(dongle_->isPlugged());
}

TEST_F(Streaming, KeepsUpWithTheFastestRateThatTheLineCarries) {
    constexpr std::size_t reports = 960;
    plugIn({.reportInterval = std::chrono::microseconds{1'000'000 / 960}});
    host_->ask(startStreaming, 5);
    EXPECT_NEAR(secondsTakenBy([&] { EXPECT_EQ(readReports(reports).size(), reports); }), 1.0, 0.002);
}

TEST_F(Streaming, ReportsThatTheLineCannotCarryAreLeftOutButNoAnswer) {
    // Ten times as many as it carries.
    plugIn({.reportInterval = 100us});
    host_->ask(startStreaming, 5);
    constexpr std::size_t questions = 100;
    for (std::size_t asked = 0; asked < questions; ++asked) {
        system.sleepFor(10ms);
        host_->write(query('s'));
    }
    host_->write(stopStreaming);
    std::size_t answers = 0;
    std::size_t bytes = 0;
    ByteBuffer payload;
    for (ByteBuffer header = host_->read(4); header.size() == 4 && payload != ByteBuffer{0};
         header = host_->read(4)) {
        payload = host_->read(header[3]);
        bytes += 4 + payload.size();
        answers += header[2] == 's' ? 1 : 0;
    }
    EXPECT_EQ(answers, questions);
    // What the line carries in a second, and 4096 bytes that wait.
    EXPECT_LT(bytes, 16'000U);
}

TEST_F(Streaming, AHummingDeviceReportsClaritiesThatRiseAndFall) {
    plugIn({.hums = true, .reportInterval = 1ms});
    host_->ask(startStreaming, 5);
    float highest = 0.0F;
    const auto deadline = system.now() + 10s;
    while (highest < 0.3F && system.now() < deadline) {
        highest = std::max(highest, readReports(1).at(0));
    }
    ASSERT_GE(highest, 0.3F);
    float lowest = 1.0F;
    while (lowest > 0.1F && system.now() < deadline) {
        lowest = std::min(lowest, readReports(1).at(0));
    }
    EXPECT_LE(lowest, 0.1F);
}

TEST_F(Streaming, AHummingDeviceReportsEachFinishedHumOnce) {
    plugIn({.hums = true});
    const ByteBuffer none = frame('r', 'l', {0, 0, 0});
    const auto deadline = system.now() + 10s;
    ByteBuffer answer = host_->ask(query('l'), 7);
    while (answer == none && system.now() < deadline) {
        answer = host_->ask(query('l'), 7);
    }
    ASSERT_EQ(answer.size(), 7U);
    EXPECT_GE(answer[4], 5);   // 0.2 s
    EXPECT_LE(answer[4], 65);  // 2.6 s
    EXPECT_EQ(host_->ask(query('l'), 7), none);
}

TEST_F(Streaming, APacedLineCarries11520BytesASecond) {
    plugIn({.paced = true});
    const ByteBuffer halfASecond(5'760, 0x55);
    dongle_->send(halfASecond);
    EXPECT_NEAR(secondsTakenBy([&] { EXPECT_EQ(host_->read(halfASecond.size()), halfASecond); }), 0.5,
                0.0001);
}

TEST_F(Streaming, APacedLineOwesNothingAfterAPause) {
    plugIn({.paced = true});
    dongle_->send(ByteBuffer(12, 0x55));
    host_->read(12);
    system.sleepFor(1s);
    dongle_->send(ByteBuffer(1'152, 0x55));
    EXPECT_NEAR(secondsTakenBy([&] { host_->read(1'152); }), 0.1, 0.0001);
}

TEST(StreamingOnATerminal, TakesTheTimeOfAPacedLine) {
    const TemporaryDirectory directory;
    VirtualDongle dongle{directory.path(), {.paced = true}};
    const RawHost host{dongle.path()};
    const ByteBuffer tenthOfASecond(1'152, 0x55);
    const auto before = Clock::now();
    dongle.send(tenthOfASecond);
    EXPECT_EQ(host.read(tenthOfASecond.size()), tenthOfASecond);
    EXPECT_GE(Clock::now() - before, 99ms);
}

TEST(StreamingOnATerminal, SendsReportsAsTheyBecomeDue) {
    const TemporaryDirectory directory;
    const VirtualDongle dongle{directory.path(), {.reportInterval = 10ms}};
    const RawHost host{dongle.path()};
    const auto before = Clock::now();
    EXPECT_EQ(host.ask(startStreaming, 5), frame('r', 't', {2}));
    for (int report = 0; report < 3; ++report) {
        EXPECT_FLOAT_EQ(maximumOf(host.read(12)), 0.05F);
    }
    EXPECT_GE(Clock::now() - before, 30ms);
}

TEST(StreamingOnATerminal, NoAnswerIsLostToAHostThatDoesNotReadForLong) {
    const TemporaryDirectory directory;
    const VirtualDongle dongle{directory.path()};
    const RawHost host{dongle.path()};
    const ByteBuffer answer = host.ask(query('v'), 20);
    // More than the system keeps.
    constexpr std::size_t questions = 10'000;
    for (std::size_t asked = 0; asked < questions; ++asked) {
        host.write(query('v'));
    }
    ASSERT_TRUE(dongle.waitForFrames(questions + 1, RawHost::patience));
    for (std::size_t asked = 0; asked < questions; ++asked) {
        ASSERT_EQ(host.read(answer.size()), answer) << asked;
    }
}

}  // namespace
}  // namespace velmorindal
