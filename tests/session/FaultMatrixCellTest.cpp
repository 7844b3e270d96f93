#include <algorithm>
#include <iostream>

#include "FaultMatrixTest.h"

namespace velmorindal {

std::string nameOf(const Cell& cell) {
    return std::string{cell.exchange.name} + "Meets" + std::string{cell.fault.name};
}

void PrintTo(const Cell& cell, std::ostream* stream) {
    *stream << nameOf(cell);
}

namespace {

/// Nothing is written for a report that could be cut, and an answer without payload has no byte of one to
/// lose. Every other fault must occur in its exchange.
bool cannotHappen(const Cell& cell) {
    const Exchange exchange = cell.exchange.exchange;
    switch (cell.fault.kind) {
        case FaultKind::writeCutShort:
            return exchange == Exchange::autoTuneReport;
        case FaultKind::payloadOneByteShorter:
            return exchange == Exchange::storeSettings || exchange == Exchange::bluetoothStore;
        default:
            return false;
    }
}

/// What progress shows as read is in place, and nothing else.
void expectSettingsReadAsFarAs(const Story& story, const Cell& cell, const VelmorindalSwitch& velmorindal) {
    const auto reached = [&story](double step) { return std::ranges::count(story.progress, step) > 0; };
    const bool bluetooth = cell.exchange.exchange >= Exchange::bluetoothReadProtocol;
    const OutputPath devicePath = bluetooth ? OutputPath::BTKeyboard : OutputPath::USBKeyboard;
    EXPECT_EQ(velmorindal.outputPath.get(), reached(4) ? devicePath : OutputPath::Switch);
    EXPECT_EQ(velmorindal.outputMode.get(), reached(5) ? OutputMode::LongShort : OutputMode::Direct);
    EXPECT_EQ(velmorindal.cutoff.get(), reached(5) ? 1.0F : 1.5F);
    EXPECT_EQ(velmorindal.clarity.get(), reached(6) ? 0.25F : 0.5F);
    EXPECT_EQ(velmorindal.isValid, story.results.front() == "true");
}

}  // namespace

TEST_P(FaultMatrixTest, EndsAsTheTableSays) {
    const Story expected = expectedStory(cell());
    const Story actual = play();
    EXPECT_EQ(actual.results, expected.results);
    EXPECT_EQ(actual.connectionStates, expected.connectionStates);
    EXPECT_EQ(actual.pollingStates, expected.pollingStates);
    EXPECT_EQ(actual.progress, expected.progress);
    EXPECT_EQ(actual.readings, expected.readings);
    EXPECT_EQ(actual.lines, expected.lines);
    EXPECT_EQ(actual.frames, expected.frames);
    const auto arrived = framesThatArrived(expected.frames);
    EXPECT_TRUE(dongle.waitForFrames(arrived.size(), dispatch.bound));
    EXPECT_EQ(dongle.receivedFrames(), arrived);
    EXPECT_EQ(faultHappened(), !cannotHappen(cell()));
    if (connects()) {
        expectSettingsReadAsFarAs(expected, cell(), velmorindal);
    }
    if (calibrates()) {
        EXPECT_FALSE(velmorindal.bgIsProcessing);
        EXPECT_EQ(velmorindal.lastError.get(), std::nullopt);
    }
}

INSTANTIATE_TEST_SUITE_P(Cells, FaultMatrixTest, testing::ValuesIn(matrixCells()),
                         [](const auto& test) { return nameOf(test.param); });

TEST(FaultMatrix, HasACellForEveryExchangeAndEveryFault) {
    // The probe, version, status, five readings and four for Bluetooth, seven writes and six for Bluetooth,
    // start, report and stop of auto-tune, the first and the later questions for the last hum.
    EXPECT_EQ(exchangeRows().size(), 1U + 1 + 1 + 5 + 4 + 7 + 6 + 3 + 2);
    EXPECT_EQ(faultRows().size(), 19U);
    EXPECT_EQ(std::ranges::count(matrixCells(), Outcome::missing, &Cell::outcome), 0);
    std::cout << "Fault matrix: " << matrixCells().size() << " cells, every one a test.\n";
}

}  // namespace velmorindal
