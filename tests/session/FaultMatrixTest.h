#pragma once

#include <atomic>
#include <memory>

#include "FaultMatrixStory.h"
#include "SessionTest.h"

namespace velmorindal {

/// A session that meets the fault of one cell, played through to its end.
class FaultMatrixTest : public SessionTest, public testing::WithParamInterface<Cell> {
  protected:
    /// Only the reports of the test are sent.
    FaultMatrixTest() : SessionTest{{.reportInterval = std::chrono::microseconds{0}}} {}

    void SetUp() override;

    /// Does what a user does, as far as the fault allows.
    Story play();

    /// Those of the frames in `written` that got out whole and found a dongle.
    std::vector<ByteBuffer> framesThatArrived(const std::vector<ByteBuffer>& written) const;

    /// Whether the dongle has bent an answer, or the system has cut a write, as the cell says.
    bool faultHappened() const {
        return isFault(FaultKind::writeCutShort) ? system.cutHasHappened() : *answersBent_ == 1;
    }

    bool connects() const { return cell().exchange.exchange < Exchange::writeProtocol; }
    bool calibrates() const { return cell().exchange.exchange >= Exchange::autoTuneStart; }
    const Cell& cell() const { return GetParam(); }

  private:
    Fault countedFault() const;
    void playConnection();
    void playCommit();
    void playClarityRun();
    void playDurationRun();

    bool connectOnce();
    bool commitOnce();
    void askAgain();
    std::string ask(VelmorindalMessageType type);
    void sendReportsAndWaitForThem();
    bool waitForReading(double clarity);
    void noteResult(bool result);

    /// On the thread that writes, before each of its frames.
    void beforeFrame(std::size_t number);
    void noteStates();
    bool waitForThePull();

    bool isFault(FaultKind kind) const { return cell().fault.kind == kind; }
    bool endsWithThePull() const {
        return isFault(FaultKind::pulledBefore) || isFault(FaultKind::pulledDuring) ||
               isFault(FaultKind::pulledAfter);
    }
    bool isExchange(Exchange exchange) const { return cell().exchange.exchange == exchange; }

    /// The dongle outlives the test.
    std::shared_ptr<std::atomic<int>> answersBent_ = std::make_shared<std::atomic<int>>(0);
    ChangeNotifier::Subscription states_;
    Story story_;
};

}  // namespace velmorindal
