// Every operation once with threads that run at once and a real terminal: for the sanitizers, and for what a
// schedule without a second processor cannot show.

#include <fstream>

#include "SessionTest.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;

TEST_F(TerminalSessionTest, ConnectsAndProgramsADevice) {
    ASSERT_TRUE(connect());
    velmorindal.outputPath = OutputPath::USBKeyboard;
    velmorindal.clarity = 0.75;

    EXPECT_TRUE(dispatch.finish([this] { return velmorindal.commitSettingsToDevice(); }));

    const DeviceState device = dongle.state();
    ASSERT_TRUE(device.stored);
    EXPECT_EQ(device.stored, device.settings);
    EXPECT_EQ(device.stored->thresholds.ap, 0.75F);
    EXPECT_EQ(device.stored->outputPath, 0);
}

TEST_F(TerminalSessionTest, AClarityRunShowsReadingsUntilItIsStopped) {
    openPort();
    dongle.reportClarity(0.75F);
    velmorindal.beginClarityPolling();
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return velmorindal.detectedClarity.get() == 0.75; }));

    velmorindal.stopPollingAndWait();
    dispatch.runPendingMainWork();

    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.detectedClarity.get(), 0.0);
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return dongle.state().autoTuneChannel == 0; }));
}

TEST_F(TerminalSessionTest, ADurationRunShowsTheLastHumUntilItIsStopped) {
    openPort();
    double longest = 0.0;
    const auto subscription = velmorindal.objectWillChange.subscribe(
        [&] { longest = std::max(longest, velmorindal.detectedDuration.get()); });
    velmorindal.beginDurationPolling();
    EXPECT_TRUE(
        dispatch.runMainWorkUntil([this] { return dongle.timesReceived(Type::lastHumDuration) >= 2; }));
    dongle.humOnce(50);
    EXPECT_TRUE(dispatch.runMainWorkUntil([&] { return longest == 2.0; }));

    velmorindal.stopPollingAndWait();
    dispatch.runPendingMainWork();

    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.detectedDuration.get(), 0.0);
}

TEST_F(TerminalSessionTest, ClosingThePortUnderARunningConnectionEndsIt) {
    dongle.staySilentOn(Type::status);
    const auto connection = dispatch.inBackground([this] { return velmorindal.connect(); });
    EXPECT_TRUE(dispatch.runMainWorkUntil([this] { return dongle.timesReceived(Type::status) == 1; }));

    velmorindal.serialPort.get()->closePort();

    EXPECT_FALSE(connection.get());
    dispatch.runPendingMainWork();
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::error);
}

TEST_F(TerminalSessionTest, AFileThatIsLoadedWhileConnectingLeavesItsErrorBesideTheConnections) {
    const auto torn = directory.path() / "torn.xml";
    std::ofstream{torn} << "<VibrationSwitch";
    dongle.onFirst(Type::humDuration, Fault::payloadOneByteShorter());
    const auto connection = dispatch.inBackground([this] { return velmorindal.connect(); });

    std::size_t loads = 0;
    EXPECT_TRUE(dispatch.runMainWorkUntil([&] {
        const OperationResult load = velmorindal.loadXML(torn.string());
        EXPECT_FALSE(load);
        EXPECT_EQ(load.text, "Could not parse XML file. Possibly invalid syntax.");
        ++loads;
        return connection.isReady();
    }));

    EXPECT_GT(loads, 1U);
    EXPECT_FALSE(connection.get());
    EXPECT_EQ(connection.get().text, "Invalid response from dongle (Error code: VCHD/IV)");
}

}  // namespace
}  // namespace velmorindal
