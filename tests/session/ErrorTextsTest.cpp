// Connecting and loading a settings file can go on together, and both leave a text in `lastError`.

#include <fstream>
#include <span>

#include "SessionTest.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;
using testing::Optional;

class ErrorTextsTest : public SessionTest {
  protected:
    OperationResult loadATornFile() {
        const auto path = directory.path() / "torn.xml";
        std::ofstream{path} << "<VibrationSwitch";
        return velmorindal.loadXML(path.string());
    }

    static constexpr const char* tornText = "Could not parse XML file. Possibly invalid syntax.";
    static constexpr const char* readingText = "Invalid response from dongle (Error code: VCHD/IV)";
};

TEST_F(ErrorTextsTest, AFailedLoadLeavesTheReasonOfAFailedConnectionAlone) {
    dongle.onFirst(Type::humDuration, Fault::payloadOneByteShorter());
    auto connection = dispatch.inBackground([this] { return velmorindal.connect(); });
    // The reading has left its text, and the attempt waits for its last state to be set.
    ASSERT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.lastError.get().has_value(); }));
    ASSERT_FALSE(connection.isReady());
    EXPECT_THAT(velmorindal.lastError.get(), Optional(std::string{readingText}));

    EXPECT_THAT(loadATornFile().text, Optional(std::string{tornText}));
    ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return connection.isReady(); }));

    EXPECT_FALSE(connection.get());
    EXPECT_THAT(connection.get().text, Optional(std::string{readingText}));
    EXPECT_THAT(velmorindal.lastError.get(), Optional(std::string{tornText}));
}

TEST_F(ErrorTextsTest, ALoadThatFailsWhileTheSettingsAreReadDoesNotReplaceTheReasonOfTheFailure) {
    dongle.onFirst(Type::humDuration, Fault::payloadOneByteShorter());
    // Between the question and its answer.
    OperationResult load;
    dongle.whenReceived([&](std::span<const std::uint8_t> frame) {
        if (frame[2] == static_cast<std::uint8_t>(Type::humDuration)) {
            load = loadATornFile();
        }
    });
    const OperationResult connection = connect();
    dongle.whenReceived({});

    EXPECT_FALSE(load);
    EXPECT_THAT(load.text, Optional(std::string{tornText}));
    EXPECT_FALSE(connection);
    EXPECT_THAT(connection.text, Optional(std::string{readingText}));
    EXPECT_THAT(velmorindal.lastError.get(), Optional(std::string{readingText}));
}

TEST_F(ErrorTextsTest, ConnectingStartsWithoutTheTextOfAnEarlierLoad) {
    EXPECT_FALSE(loadATornFile());

    const OperationResult connection = connect();

    EXPECT_TRUE(connection);
    EXPECT_EQ(connection.text, std::nullopt);
    EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
