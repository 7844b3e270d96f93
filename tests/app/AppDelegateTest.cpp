#include "AppDelegate.h"

#include "InProcessDongle.h"
#include "WizardTest.h"

namespace velmorindal {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// The delegate's own model and a container on it.
class AppDelegateTest : public testing::Test, protected VirtualWorld {
  public:
    ~AppDelegateTest() override { end(); }

  protected:
    void TearDown() override {
        velmorindal.pollingState = PollingState::none;
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        velmorindal.disconnect(false);
    }

    bool connect() {
        return dispatch.finish([this] { return velmorindal.connect(); });
    }

    bool portIsOpen() const {
        const auto port = velmorindal.serialPort.get();
        return port && port->fileDescriptor().has_value();
    }

    TemporaryDirectory directory;
    AppDelegate delegate{dispatch, system, {.directory = directory.path().string() + "/"}};
    VelmorindalSwitch& velmorindal = delegate.velmorindal;
    PretendFilePanel filePanel;
    ContainerView container{velmorindal, dispatch, filePanel,
                            [this] { delegate.applicationShouldTerminate(); }};
};

TEST_F(AppDelegateTest, MakesTheModelBeforeAnythingElse) {
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::idle);
    EXPECT_EQ(velmorindal.serialPort.get(), nullptr);
}

TEST_F(AppDelegateTest, ClosingTheWindowEndsTheProgram) {
    EXPECT_TRUE(AppDelegate::applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(AppDelegateTest, SaysFarewell) {
    EXPECT_THAT(linesPrintedBy([] { AppDelegate::applicationWillTerminate(); }), ElementsAre("Farewell"));
}

TEST_F(AppDelegateTest, QuittingWithoutADeviceDisconnectsAllTheSame) {
    const auto lines = linesPrintedBy([&] { EXPECT_TRUE(delegate.applicationShouldTerminate()); });

    EXPECT_THAT(lines, ElementsAre("I'm being told to go now.", "Quitting program!",
                                   "Setting polling state from  none none"));
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
}

TEST_F(AppDelegateTest, QuittingTwiceIsHarmless) {
    EXPECT_TRUE(delegate.applicationShouldTerminate());
    EXPECT_TRUE(delegate.applicationShouldTerminate());

    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
}

TEST_F(AppDelegateTest, QuittingClosesThePort) {
    const InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    ASSERT_TRUE(portIsOpen());

    delegate.applicationShouldTerminate();

    EXPECT_FALSE(portIsOpen());
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
}

TEST_F(AppDelegateTest, QuittingStopsARunningPollAndWaitsForItsStepToEnd) {
    InProcessDongle dongle{system, directory.path(), {.reportInterval = std::chrono::milliseconds{5}}};
    ASSERT_TRUE(connect());
    for (const PollingState measurement : {PollingState::clarity, PollingState::duration}) {
        velmorindal.connectionState = ConnectionStatus::connected;
        if (measurement == PollingState::clarity) {
            container.calibrationPanel.showClarityPressed();
        } else {
            velmorindal.serialPort.get()->openPort();
            container.calibrationPanel.showDurationPressed();
        }
        ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return velmorindal.pollingState.get() == measurement; }));

        const auto lines = linesPrintedBy([&] { delegate.applicationShouldTerminate(); });

        EXPECT_THAT(lines,
                    Contains("Setting polling state from  " + std::string{caseName(measurement)} + " none"));
        EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
        EXPECT_FALSE(velmorindal.bgIsProcessing);
        EXPECT_FALSE(portIsOpen());
        // A report on its way looks like the acknowledgement of the order to stop, which the device may get
        // to later.
        EXPECT_TRUE(dispatch.runMainWorkUntil([&] { return dongle.state().autoTuneChannel == 0; }));
    }
}

TEST_F(AppDelegateTest, QuittingStopsARunThatIsOnlyStarting) {
    container.calibrationPanel.showDurationPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));
    ASSERT_EQ(velmorindal.pollingState.get(), PollingState::none);

    delegate.applicationShouldTerminate();

    EXPECT_FALSE(velmorindal.bgIsProcessing);
    EXPECT_EQ(velmorindal.pollingState.get(), PollingState::none);
}

TEST_F(AppDelegateTest, QuittingWaitsUntilTheStateThatTheWritePostedHasArrived) {
    velmorindal.connectionState = ConnectionStatus::writing;
    dispatch.postToMain([this] { velmorindal.connectionState = ConnectionStatus::connected; });

    const auto lines = linesPrintedBy([&] { delegate.applicationShouldTerminate(); });

    EXPECT_THAT(lines, ElementsAre("I'm being told to go now.", "Quitting program!",
                                   "Setting polling state from  none none", "Waiting for write to finish."));
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
}

TEST_F(AppDelegateTest, EveryTurnOfTheWaitForAWriteIsLogged) {
    velmorindal.connectionState = ConnectionStatus::writing;
    // The write ends in the second turn: what it posts then was not pending in the first.
    dispatch.postToMain(
        [this] { dispatch.postToMain([this] { velmorindal.connectionState = ConnectionStatus::error; }); });

    const Scheduler::Moment start = scheduler.now();
    const auto lines = linesPrintedBy([&] { delegate.applicationShouldTerminate(); });

    EXPECT_EQ(linesStarting("Waiting for write to finish.", lines).size(), 2U);
    EXPECT_EQ(scheduler.now() - start, 2 * std::chrono::milliseconds{200});
}

TEST_F(AppDelegateTest, QuittingDuringAWriteLetsTheDeviceStoreItAll) {
    InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    dongle.onEvery(VelmorindalMessageType::keyboardConfig, Fault::lateBy(std::chrono::milliseconds{300}));
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.runOneMainWork());
    ASSERT_EQ(velmorindal.connectionState.get(), ConnectionStatus::writing);

    const auto lines = linesPrintedBy([&] {
        container.cancelButtonPressed();
        container.raisedDialogs().front().buttons.front().action();
    });

    EXPECT_THAT(lines, Contains("Waiting for write to finish."));
    EXPECT_EQ(dongle.state().timesStored, 1U);
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
    EXPECT_FALSE(portIsOpen());
}

TEST_F(AppDelegateTest, QuittingBeforeASubmittedWriteHasAnnouncedItselfWritesNothing) {
    InProcessDongle dongle{system, directory.path()};
    ASSERT_TRUE(connect());
    const std::size_t framesOfConnecting = dongle.receivedFrames().size();
    container.saveButtonPressed();
    ASSERT_TRUE(dispatch.waitForPendingMainWork(1));

    const auto lines = linesPrintedBy([&] { delegate.applicationShouldTerminate(); });
    EXPECT_THAT(lines, Not(Contains("Waiting for write to finish.")));
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);

    // In the program its turn never comes. If it came, the port would be closed.
    dispatch.waitForBackground();
    EXPECT_EQ(dongle.receivedFrames().size(), framesOfConnecting);
    EXPECT_EQ(dongle.state().timesStored, 0U);
}

TEST_F(AppDelegateTest, QuittingWhileConnectingClosesThePortUnderTheAttempt) {
    InProcessDongle dongle{system, directory.path()};
    dongle.staySilentOn(VelmorindalMessageType::status);
    container.nextButtonPressed();
    ASSERT_TRUE(dispatch.runMainWorkUntil([&] { return portIsOpen(); }));

    EXPECT_TRUE(delegate.applicationShouldTerminate());

    EXPECT_FALSE(portIsOpen());
    EXPECT_EQ(velmorindal.connectionState.get(), ConnectionStatus::disconnected);
}

}  // namespace
}  // namespace velmorindal
