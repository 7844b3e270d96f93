#include "FaultMatrixTest.h"

#include <limits>
#include <sstream>

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;

/// What the readings and the progress stand at from an earlier run.
constexpr double earlierReading = 9.0;
constexpr double earlierProgress = 7.0;
/// Longer than the port waits for a frame to become whole.
constexpr std::chrono::seconds afterTheTimeOut{4};
const ByteBuffer unaskedStatus{0x72, 0x62, 0x73, 0x01, 0x01};

template <typename Value>
void noteChange(std::vector<Value>& history, const Value& value) {
    if (history.empty() || history.back() != value) {
        history.push_back(value);
    }
}

template <typename Value>
void dropFirst(std::vector<Value>& history) {
    history.erase(history.begin());
}

std::vector<std::string> linesOf(const std::string& printed, const std::string& path) {
    std::string text = withoutDescriptors(printed);
    for (auto at = text.find(path); at != std::string::npos; at = text.find(path)) {
        text.replace(at, path.size(), "PATH");
    }
    std::vector<std::string> lines;
    std::istringstream stream{text};
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

bool isSame(const AnswerPlan& plan, const AnswerPlan& other) {
    return plan.bytesBefore == other.bytesBefore && plan.answer == other.answer &&
           plan.delivery == other.delivery && plan.delay == other.delay &&
           plan.unplugging == other.unplugging && plan.applies == other.applies;
}

}  // namespace

/// The cell's fault, counted where it changes an answer.
Fault FaultMatrixTest::countedFault() const {
    const Fault& fault = cell().fault.fault;
    return {fault.name(), [fault, bent = answersBent_](AnswerPlan& plan) {
                const AnswerPlan sound = plan;
                fault.bend(plan);
                *bent += isSame(plan, sound) ? 0 : 1;
            }};
}

void FaultMatrixTest::SetUp() {
    const ExchangeRow& exchange = cell().exchange;
    if (isFault(FaultKind::writeCutShort)) {
        // Its first byte goes out: the device passes over it and understands the next frame. Of the frames
        // for a report there is none that could be cut: the order to start and the order to stop are whole.
        const std::size_t occurrence =
            exchange.column == Column::report ? std::numeric_limits<std::size_t>::max() : exchange.occurrence;
        system.cutWrite(exchange.type, occurrence, 1);
    } else if (exchange.column == Column::report) {
        dongle.onReport(exchange.occurrence, countedFault());
    } else {
        dongle.onOccurrence(exchange.occurrence, exchange.type, countedFault());
    }
    velmorindal.readWriteProgress = earlierProgress;
    velmorindal.detectedClarity = earlierReading;
    velmorindal.detectedDuration = earlierReading;
    if (connects()) {
        const bool bluetooth = exchange.exchange >= Exchange::bluetoothReadProtocol;
        dongle.prepare([bluetooth](DeviceState& device) {
            device.settings.protocol = bluetooth ? 1 : 0;
            device.settings.outputPath = 0;
            device.settings.thresholds.ap = 0.25F;
        });
    } else {
        openPort();
        velmorindal.connectionState = ConnectionStatus::connected;
        velmorindal.isValid = true;
    }
    system.beforeFrame([this](std::size_t number) { beforeFrame(number); });
}

void FaultMatrixTest::beforeFrame(std::size_t number) {
    if (isFault(FaultKind::pulledAfter) && number == cell().exchange.frame + 1) {
        waitForThePull();
    }
    if (cell().exchange.exchange < Exchange::durationFirst) {
        return;
    }
    // Hums of 3, 2 and 1 seconds, in ticks of 40 ms, for the first three questions.
    if (number < 4) {
        dongle.humOnce(static_cast<std::uint16_t>(25 * (4 - number)));
    } else if (number == 4) {
        dispatch.runOnMainAndWait([this] { velmorindal.pollingState = PollingState::none; });
    }
}

bool FaultMatrixTest::waitForThePull() {
    dongle.waitForFrames(std::numeric_limits<std::size_t>::max(), TestDispatch::bound);
    return !dongle.isPlugged();
}

void FaultMatrixTest::noteStates() {
    noteChange(story_.connectionStates, std::string{caseName(velmorindal.connectionState.get())});
    noteChange(story_.pollingStates, std::string{caseName(velmorindal.pollingState.get())});
    noteChange(story_.progress, velmorindal.readWriteProgress.get());
    noteChange(story_.readings, cell().exchange.exchange < Exchange::durationFirst
                                    ? velmorindal.detectedClarity.get()
                                    : velmorindal.detectedDuration.get());
}

Story FaultMatrixTest::play() {
    // An announcement comes before its change: all the values that are replaced, and in the end those that
    // stay.
    states_ = velmorindal.objectWillChange.subscribe([this] { noteStates(); });
    noteStates();
    PrintedLines printed;
    if (connects()) {
        playConnection();
    } else if (cell().exchange.exchange < Exchange::autoTuneStart) {
        playCommit();
    } else if (cell().exchange.exchange < Exchange::durationFirst) {
        playClarityRun();
    } else {
        playDurationRun();
    }
    noteStates();
    states_.reset();
    story_.lines = linesOf(printed.take(), dongle.path().string());
    story_.frames = system.frames();
    dropFirst(story_.connectionStates);
    dropFirst(story_.pollingStates);
    dropFirst(story_.progress);
    dropFirst(story_.readings);
    return story_;
}

void FaultMatrixTest::noteResult(bool result) {
    const auto text = velmorindal.lastError.get();
    story_.results.push_back(std::string{result ? "true" : "false"} + (text ? ": " + *text : ""));
}

void FaultMatrixTest::playConnection() {
    noteResult(connectOnce());
    if (!isFault(FaultKind::answerDuringTheNextExchange)) {
        return;
    }
    if (isExchange(Exchange::probe)) {
        noteResult(connectOnce());
    } else {
        askAgain();
    }
}

bool FaultMatrixTest::connectOnce() {
    auto result = dispatch.inBackground([this] { return velmorindal.connect(); });
    // The progress of 0, and either `connecting`, for which the connection waits, or `error`.
    EXPECT_TRUE(dispatch.waitForPendingMainWork(2));
    if (isExchange(Exchange::probe) && isFault(FaultKind::pulledAfter)) {
        EXPECT_TRUE(waitForThePull());
    }
    return dispatch.finish([&result] { return result.get(); });
}

void FaultMatrixTest::askAgain() {
    story_.results.push_back(ask(cell().exchange.type));
    story_.results.push_back(ask(cell().exchange.type == Type::status ? Type::version : Type::status));
}

std::string FaultMatrixTest::ask(VelmorindalMessageType type) {
    return dispatch.finish([this, type]() -> std::string {
        try {
            const auto answer = velmorindal.queryDevice(static_cast<std::uint8_t>(type));
            return answer && answer->_valid ? "answered" : "not answered";
        } catch (const VelmorindalException& exception) {
            return exception.what();
        }
    });
}

void FaultMatrixTest::playCommit() {
    const bool bluetooth = cell().exchange.exchange >= Exchange::bluetoothProtocol;
    velmorindal.outputPath = bluetooth ? OutputPath::BTKeyboard : OutputPath::USBKeyboard;
    velmorindal.outputMode = OutputMode::LongShort;
    velmorindal.shortEnabled = true;
    velmorindal.longEnabled = true;
    velmorindal.outputKeys = {OutputKey::F1, OutputKey::Space, OutputKey::Tilde2};
    velmorindal.clarity = 0.5F;
    velmorindal.cutoff = 1.0F;
    noteResult(commitOnce());
    if (isFault(FaultKind::answerDuringTheNextExchange)) {
        velmorindal.connectionState = ConnectionStatus::connected;
        noteResult(commitOnce());
    }
}

bool FaultMatrixTest::commitOnce() {
    return dispatch.finish([this] { return velmorindal.commitSettingsToDevice(); });
}

void FaultMatrixTest::playClarityRun() {
    const bool again =
        isFault(FaultKind::answerDuringTheNextExchange) && !isExchange(Exchange::autoTuneReport);
    for (int run = 0; run < (again ? 2 : 1); ++run) {
        velmorindal.beginClarityPolling();
        EXPECT_TRUE(dispatch.runMainWorkUntil([this] {
            return velmorindal.pollingState.get() == PollingState::clarity || !velmorindal.bgIsProcessing;
        }));
        if (velmorindal.pollingState.get() == PollingState::clarity) {
            sendReportsAndWaitForThem();
            velmorindal.pollingState = PollingState::none;
            // Spares the time-out of the reading under way; as a frame of another type it is passed over.
            dongle.send(unaskedStatus);
        }
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        story_.results.emplace_back("ended");
    }
}

void FaultMatrixTest::sendReportsAndWaitForThem() {
    if (isExchange(Exchange::autoTuneStart) && isFault(FaultKind::pulledAfter)) {
        EXPECT_TRUE(waitForThePull());
        return;
    }
    const bool startLeftAByte = isExchange(Exchange::autoTuneStart) && cell().outcome == Outcome::nextThrown;
    if (startLeftAByte || cell().outcome == Outcome::swallowed) {
        dongle.onReport(2, Fault::lateBy(afterTheTimeOut));
    }
    dongle.sendReport(0.75F);
    if (isExchange(Exchange::autoTuneReport) && endsWithThePull()) {
        EXPECT_TRUE(!isFault(FaultKind::pulledAfter) || waitForReading(0.75));
        EXPECT_TRUE(waitForThePull());
        return;
    }
    dongle.sendReport(0.25F);
    EXPECT_TRUE(waitForReading(0.25));
}

bool FaultMatrixTest::waitForReading(double clarity) {
    return dispatch.runMainWorkUntil([&] { return velmorindal.detectedClarity.get() == clarity; });
}

void FaultMatrixTest::playDurationRun() {
    const bool again = isFault(FaultKind::answerDuringTheNextExchange) && isExchange(Exchange::durationFirst);
    for (int run = 0; run < (again ? 2 : 1); ++run) {
        velmorindal.beginDurationPolling();
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        story_.results.emplace_back("ended");
    }
}

std::vector<ByteBuffer> FaultMatrixTest::framesThatArrived(const std::vector<ByteBuffer>& written) const {
    std::vector<ByteBuffer> arrived = written;
    const std::size_t hit = cell().exchange.frame;
    if (endsWithThePull()) {
        arrived.resize(std::min(arrived.size(), hit));
    }
    if (cell().outcome == Outcome::nothing) {
        arrived.erase(arrived.begin() + static_cast<std::ptrdiff_t>(hit - 1));
    }
    return arrived;
}

}  // namespace velmorindal
