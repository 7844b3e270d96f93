#include "Monkey.h"

#include <unistd.h>

#include <QApplication>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "Print.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;

/// Quitting waits for an exchange with the device, two seconds at most each, and there may be a few.
constexpr std::chrono::seconds longestPress{20};
constexpr std::size_t recentStepsKept = 30;

constexpr std::array types{Type::version,         Type::status,       Type::protocolSelect,
                           Type::outputPath,      Type::humDuration,  Type::humThresholds,
                           Type::relayConfig,     Type::autoTune,     Type::keyboardConfig,
                           Type::lastHumDuration, Type::writeSettings};

/// A candidate that failed its probe keeps its descriptor until its program ends. Programs end here without
/// their process.
void closeForgottenPorts() {
    for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"}) {
        std::error_code gone;
        const std::string target = std::filesystem::read_symlink(entry.path(), gone).string();
        const int descriptor = std::stoi(entry.path().filename().string());
        if (target.starts_with("/dev/pts/") && descriptor > STDERR_FILENO) {
            ::close(descriptor);
        }
    }
}

std::string milliseconds(std::chrono::steady_clock::duration time) {
    return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(time).count()) + " ms";
}

}  // namespace

Monkey::Monkey(std::uint64_t seed) : seed_{seed} {
    std::ofstream{files_.path() / "torn.xml"} << "<velmorindal><torn";
    startProgram();
}

Monkey::~Monkey() {
    endProgram();
}

void Monkey::startProgram() {
    ++programs_;
    log_.take();
    farewell_.reset();
    users_.emplace(system_);
    system_.forgetCut();
    loneBytes_ = 0;
    // Every other program has a device that works as it should, and is checked more strictly.
    meddles_ = oneIn(2);
    plugIn();
    wizard_ =
        std::make_unique<Wizard>(dispatch_, system_, DongleSearch{.directory = devices_.path().string()},
                                 QtFilePanel::Kind::toolkit, [this] { farewell_ = log_.take(); });
    wizard_->applicationDidFinishLaunching();
    QApplication::processEvents();
}

void Monkey::endProgram() {
    dongle_->unplug();
    wizard_->velmorindal().stopPollingAndWait();
    if (!turnUntil(longestPress, [this] { return !wizard_->container().hasBackgroundWork(); })) {
        fail("Background work did not end.");
    }
    wizard_->velmorindal().disconnect(false);
    QApplication::processEvents();
    wizard_.reset();
    dongle_.reset();
    closeForgottenPorts();
}

void Monkey::plugIn() {
    dongle_.reset();
    dongle_ = std::make_unique<VirtualDongle>(
        devices_.path(), VirtualDongle::Options{.seed = static_cast<std::uint32_t>(random_()),
                                                .reportInterval = std::chrono::milliseconds{5}});
    sent_ = {};
    framesSeen_ = 0;
    if (meddles_) {
        sent_.expectFailures();
    } else if (oneIn(2)) {
        // A slow device is no fault; it leaves more time for other steps in between.
        for (const Type type : types) {
            dongle_->onEvery(type, Fault::lateBy(std::chrono::milliseconds{10}));
        }
    }
}

void Monkey::step() {
    ++steps_;
    random_.seed(seed_ * 1'000'003U + steps_);
    if (oneIn(12)) {
        meddleWithTheDongle();
    }
    const auto start = Clock::now();
    watch_.begin(*dongle_);
    actOnTheWindow();
    watch_.end();
    longestAction_ = std::max(longestAction_, Clock::now() - start);
    if (farewell_) {
        checkFarewell();
        checkFrames();
        checkThatNothingIsLeftOpen();
        endProgram();
        startProgram();
        return;
    }
    expectAnswer();
    if (!oneIn(4)) {
        letSettle();
    }
    check();
}

void Monkey::actOnTheWindow() {
    std::string what;
    // Writes are too short to be hit by chance.
    const bool writes = wizard_->velmorindal().connectionState.get() == ConnectionStatus::writing;
    if (oneIn(writes ? 4 : 150)) {
        what = "asked the program to end";
        wizard_->terminate();
    } else {
        what = hands_.act(wizard_->window());
    }
    recent_.push_back(std::to_string(steps_) + " " + what);
    if (recent_.size() > recentStepsKept) {
        recent_.erase(recent_.begin());
    }
}

void Monkey::meddleWithTheDongle() {
    if (oneIn(2)) {
        dongle_->humOnce(static_cast<std::uint16_t>(random_() % 100));
        return;
    }
    if (!meddles_) {
        return;
    }
    if (!dongle_->isPlugged()) {
        plugIn();
    } else if (oneIn(4)) {
        ++unpluggings_;
        dongle_->unplug();
    } else {
        ++faults_;
        const Type type = types.at(random_() % types.size());
        if (oneIn(12)) {
            cutTheNext(type);
        } else {
            dongle_->onNext(type, someFault());
        }
    }
}

void Monkey::cutTheNext(Type type) {
    // The device passes over a single byte. Two would be taken for the start of a frame with those after
    // them.
    constexpr std::array<std::ptrdiff_t, 3> results{-1, 0, 1};
    const std::ptrdiff_t taken = results.at(random_() % results.size());
    loneBytes_ += taken > 0 ? 1 : 0;
    // Replaces an earlier one that has not happened yet.
    system_.cutWrite(type, 1, taken);
}

Fault Monkey::someFault() {
    // What makes the wizard wait for its two seconds is rare.
    if (oneIn(12)) {
        const std::vector slow{Fault::silence(),    Fault::halfAHeader(),   Fault::halfAPayload(),
                               Fault::wrongType(),  Fault::lengthTooLong(), Fault::lengthTooShort(),
                               Fault::noiseFirst(), Fault::late()};
        return slow[random_() % slow.size()];
    }
    const std::vector quick{Fault::errorFrame(),
                            Fault::wrongKind(),
                            Fault::wrongMarker(),
                            Fault::anotherFrameFirst(),
                            Fault::floodFirst(50),
                            Fault::payloadOneByteLonger(),
                            Fault::payloadOneByteShorter(),
                            Fault::lateBy(std::chrono::milliseconds{20}),
                            Fault::unplugBeforeAnswer(),
                            Fault::unplugDuringAnswer(),
                            Fault::unplugAfterAnswer()};
    return quick[random_() % quick.size()];
}

bool Monkey::turnUntil(std::chrono::milliseconds bound, const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + bound;
    QApplication::processEvents();
    while (!condition()) {
        if (Clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::microseconds{200});
        QApplication::processEvents();
    }
    return true;
}

void Monkey::fail(const std::string& what) {
    throw std::runtime_error{what};
}

void Monkey::expectAnswer() {
    bool answered = false;
    const auto asked = Clock::now();
    QMetaObject::invokeMethod(
        &wizard_->window(), [&answered] { answered = true; }, Qt::QueuedConnection);
    if (!turnUntil(longestWait, [&answered] { return answered; })) {
        fail("The window did not answer.");
    }
    longestAnswer_ = std::max(longestAnswer_, Clock::now() - asked);
}

void Monkey::letSettle() {
    turnUntil(longestWait, [this] {
        const VelmorindalSwitch& model = wizard_->velmorindal();
        return !wizard_->container().hasBackgroundWork() &&
               (!model.bgIsProcessing || model.pollingState.get() != PollingState::none);
    });
}

std::string Monkey::summary() const {
    return std::to_string(steps_) + " steps, seed " + std::to_string(seed_) + ", " +
           std::to_string(hands_.presses()) + " presses, " + std::to_string(programs_) + " programs, " +
           std::to_string(writes_) + " settings stored, " + std::to_string(faults_) + " faults, " +
           std::to_string(unpluggings_) + " unpluggings, " + std::to_string(watch_.pulledOut()) +
           " more to end a wait, longest press " + milliseconds(longestAction_) + ", longest answer " +
           milliseconds(longestAnswer_);
}

std::string Monkey::failure(const std::string& what) const {
    std::string text = "Monkey: FAILED at step " + std::to_string(steps_) + " of seed " +
                       std::to_string(seed_) + ": " + what + "\n";
    for (const std::string& step : recent_) {
        text += "  " + step + "\n";
    }
    return text + "Again: scripts/soak " + std::to_string(steps_) + " " + std::to_string(seed_);
}

void Monkey::giveUp() const {
    writeLine(STDERR_FILENO, failure("The window did not come back from a press."));
    std::_Exit(EXIT_FAILURE);
}

}  // namespace velmorindal
