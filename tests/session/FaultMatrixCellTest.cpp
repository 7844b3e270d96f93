#include <iostream>
#include <set>

#include "session/FaultMatrixTest.h"

namespace velmorindal {

std::string nameOf(const Cell& cell) {
    return std::string{cell.exchange.name} + "Meets" + std::string{cell.mishap.name};
}

void PrintTo(const Cell& cell, std::ostream* stream) {
    *stream << nameOf(cell);
}

TEST_P(FaultMatrixTest, EndsAsTheTableSays) {
    const Story expected = expectedStory(cell());
    const Story told = play();
    EXPECT_EQ(told.results, expected.results);
    EXPECT_EQ(told.connectionStates, expected.connectionStates);
    EXPECT_EQ(told.pollingStates, expected.pollingStates);
    EXPECT_EQ(told.progress, expected.progress);
    EXPECT_EQ(told.readings, expected.readings);
    EXPECT_EQ(told.lines, expected.lines);
    EXPECT_EQ(told.frames, expected.frames);
    const auto arrived = framesThatArrived(expected.frames);
    EXPECT_TRUE(dongle.waitForFrames(arrived.size(), ManualDispatch::bound));
    EXPECT_EQ(dongle.receivedFrames(), arrived);
}

INSTANTIATE_TEST_SUITE_P(Cells, FaultMatrixTest, testing::ValuesIn(matrixCells()),
                         [](const auto& test) { return nameOf(test.param); });

TEST(FaultMatrix, HasACellForEveryExchangeAndEveryMishapAndATestForEveryCell) {
    // The probe, version, status, five readings, seven writes and six for Bluetooth, start, report and stop
    // of auto-tune, the first and the later questions for the last hum.
    EXPECT_EQ(exchangeRows().size(), 1U + 1 + 1 + 5 + 7 + 6 + 3 + 2);
    EXPECT_EQ(mishapRows().size(), 19U);
    std::set<std::pair<Exchange, Mishap>> found;
    for (const Cell& cell : matrixCells()) {
        EXPECT_NE(cell.outcome, Outcome::missing);
        found.emplace(cell.exchange.exchange, cell.mishap.mishap);
    }
    EXPECT_EQ(found.size(), exchangeRows().size() * mishapRows().size());
    EXPECT_EQ(matrixCells().size(), found.size());

    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    int tests = 0;
    for (int suite = 0; suite < all.total_test_suite_count(); ++suite) {
        const testing::TestSuite& candidate = *all.GetTestSuite(suite);
        tests += candidate.type_param() == nullptr && std::string{candidate.name()} == "Cells/FaultMatrixTest"
                     ? candidate.total_test_count()
                     : 0;
    }
    EXPECT_EQ(tests, static_cast<int>(found.size()));
    std::cout << "Fault matrix: " << tests << " cells, every one a test.\n";
}

}  // namespace velmorindal
