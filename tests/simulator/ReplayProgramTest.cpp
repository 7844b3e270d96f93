#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

#include "ChildProcess.h"
#include "RawHost.h"
#include "TemporaryDirectory.h"

namespace velmorindal {
namespace {

const std::string replayingSimulator = VELMORINDAL_SIMULATOR_PROGRAM;

/// The program with a record of a device whose link is down.
class ReplayProgram : public testing::Test {
  protected:
    std::vector<std::string> command() const {
        return {replayingSimulator, "--replay", record_, directory_.path()};
    }
    void write(const std::string& text) const { std::ofstream{record_, std::ios::binary} << text; }

    TemporaryDirectory directory_;
    TemporaryDirectory place_;
    const std::string record_ = place_.path() / "record";
    const std::string port_ = directory_.path() / "cu.usbmodem-simulated";
    const std::string text_ =
        "Velmorindal record 1\n"
        "0.000 4 open\n"
        "0.001 4 > 63 62 73 00\n"
        "0.020 4 < 72 62 73 01 00\n"
        "0.021 4 > 63 62 76 00\n"
        "0.022 4 < 65 62 76 00\n"
        "0.030 4 close\n";
};

TEST_F(ReplayProgram, AnswersAsTheRecordedDeviceDidAndEndsWell) {
    write(text_);
    ChildProcess program{command()};
    ASSERT_TRUE(program.says(port_));
    {
        RawHost host{port_};
        EXPECT_EQ(host.ask(query('s'), 5), frame('r', 's', {0}));
        EXPECT_EQ(host.ask(query('v'), 4), frame('e', 'v', {}));
    }
    program.signal(SIGINT);
    EXPECT_EQ(program.finish(), 0);
    EXPECT_EQ(program.output(), port_ + "\nThe host has sent all that the record has of it.\n");
    EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
}

TEST_F(ReplayProgram, SaysWhereTheHostDepartsAndEndsWithAFailure) {
    write(text_);
    ChildProcess program{command()};
    ASSERT_TRUE(program.says(port_));
    EXPECT_EQ(RawHost{port_}.ask(query('v'), 4), frame('e', 'v', {}));
    EXPECT_TRUE(program.says(
        record_ + ":3: the host sent 63 62 76 00, the record has 63 62 73 00; going on at line 5\n"));
    program.signal(SIGTERM);
    EXPECT_EQ(program.finish(), 1);
}

TEST_F(ReplayProgram, ServesEveryPortOfTheRecord) {
    write(text_ + "0.030 5 open\n0.031 5 > 63 62 76 00\n0.032 5 < 72 62 76 01 56\n");
    ChildProcess program{command()};
    EXPECT_TRUE(program.says(port_ + "\n" + port_ + "-2\n"));
    EXPECT_EQ(RawHost{port_ + "-2"}.ask(query('v'), 5), frame('r', 'v', {0x56}));
    EXPECT_EQ(RawHost{port_}.ask(query('s'), 5), frame('r', 's', {0}));
}

TEST_F(ReplayProgram, RefusesWhatIsNoRecordInOneLine) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"<xml>\n", ":1: this is no record: its first line is not 'Velmorindal record 1'\n"},
        {"Velmorindal record 1\n", ": no port was opened in this record\n"}};
    for (const auto& [text, complaint] : cases) {
        write(text);
        ChildProcess program{command()};
        EXPECT_EQ(program.finish(), 1);
        EXPECT_EQ(program.output(), "velmorindal-simulator: " + record_ + complaint);
        EXPECT_TRUE(std::filesystem::is_empty(directory_.path()));
    }
}

}  // namespace
}  // namespace velmorindal
