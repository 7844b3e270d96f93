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
    bool loadATornFile() {
        const auto path = directory.path() / "torn.xml";
        std::ofstream{path} << "<VibrationSwitch";
        return velmorindal.loadXML(path.string());
    }

    static constexpr const char* tornText = "Could not parse XML file. Possibly invalid syntax.";
    static constexpr const char* readingText = "Invalid response from dongle (Error code: VCHD/IV)";
};

TEST_F(ErrorTextsTest, AFailedLoadLeavesTheReasonOfAFailedConnectionAlone) {
    dongle.onFirst(Type::humDuration, Fault::payloadOneByteShorter());
    ASSERT_FALSE(connect());
    EXPECT_THAT(velmorindal.connectionError.get(), Optional(std::string{readingText}));
    EXPECT_THAT(velmorindal.lastError.get(), Optional(std::string{readingText}));

    EXPECT_FALSE(loadATornFile());

    EXPECT_THAT(velmorindal.lastError.get(), Optional(std::string{tornText}));
    EXPECT_THAT(velmorindal.connectionError.get(), Optional(std::string{readingText}));
}

TEST_F(ErrorTextsTest, ALoadThatFailsWhileTheSettingsAreReadDoesNotReplaceTheReasonOfTheFailure) {
    dongle.onFirst(Type::humDuration, Fault::payloadOneByteShorter());
    // Between the question and its answer.
    dongle.whenReceived([this](std::span<const std::uint8_t> frame) {
        if (frame[2] == static_cast<std::uint8_t>(Type::humDuration)) {
            EXPECT_FALSE(loadATornFile());
        }
    });
    EXPECT_FALSE(connect());
    dongle.whenReceived({});

    EXPECT_THAT(velmorindal.loadError.get(), Optional(std::string{tornText}));
    EXPECT_THAT(velmorindal.connectionError.get(), Optional(std::string{readingText}));
    EXPECT_THAT(velmorindal.lastError.get(), Optional(std::string{readingText}));
}

TEST_F(ErrorTextsTest, ConnectingLeavesTheReasonOfAFailedLoadAlone) {
    EXPECT_FALSE(loadATornFile());

    EXPECT_TRUE(connect());

    EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
    EXPECT_EQ(velmorindal.connectionError.get(), std::nullopt);
    EXPECT_THAT(velmorindal.loadError.get(), Optional(std::string{tornText}));
}

}  // namespace
}  // namespace velmorindal
