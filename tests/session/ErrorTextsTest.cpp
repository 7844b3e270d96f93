// Connecting and loading a settings file can go on together, and both leave a text in `lastError`.

#include <fstream>

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

}  // namespace
}  // namespace velmorindal
