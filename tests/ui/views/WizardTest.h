#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ChangeNotifier.h"
#include "ContainerView.h"
#include "FilePanel.h"
#include "InProcessDongle.h"
#include "Print.h"
#include "PrintedLines.h"
#include "Published.h"
#include "TemporaryDirectory.h"
#include "VelmorindalSwitch.h"
#include "VirtualWorld.h"

namespace velmorindal {

/// A file panel that stays open until the test chooses a file or dismisses it.
class PretendFilePanel final : public FilePanel {
  public:
    void chooseFileToOpen(const std::vector<std::string>& allowedFileTypes, Completion completion) override {
        ask("open", allowedFileTypes, std::move(completion));
    }

    void chooseFileToSave(const std::vector<std::string>& allowedFileTypes, Completion completion) override {
        ask("save", allowedFileTypes, std::move(completion));
    }

    bool isOpen() const { return completion_ != nullptr; }

    void choose(const std::string& path) { complete(path); }
    void dismiss() { complete(std::nullopt); }

    /// What the latest panel was for: "open" or "save".
    std::string purpose;
    std::vector<std::string> allowedTypes;

  private:
    void ask(std::string_view panelPurpose, const std::vector<std::string>& types, Completion completion) {
        purpose = panelPurpose;
        allowedTypes = types;
        completion_ = std::move(completion);
    }

    void complete(std::optional<std::string> path) {
        ASSERT_TRUE(isOpen());
        std::exchange(completion_, nullptr)(std::move(path));
    }

    Completion completion_;
};

/// What is printed while `action` runs, line by line.
template <typename Action>
std::vector<std::string> linesPrintedBy(Action action) {
    PrintedLines printed;
    action();
    const std::string text = printed.take();
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

/// Those of `lines` that start with `start`.
inline std::vector<std::string> linesStarting(std::string_view start, const std::vector<std::string>& lines) {
    std::vector<std::string> found;
    for (const std::string& line : lines) {
        if (line.starts_with(start)) {
            found.push_back(line);
        }
    }
    return found;
}

/// The values of `state` during `action`: before each change that `notifier` announces, and at each line that
/// is printed, followed by that line.
template <typename State, typename Action>
std::vector<std::string> statesDuring(ChangeNotifier& notifier, State state, Action action) {
    std::vector<std::string> states;
    const auto subscription = notifier.subscribe([&] { states.push_back(state()); });
    const PrintDiversion diversion{
        [&](std::string_view line) { states.push_back(state() + std::string{line}); }};
    action();
    return states;
}

/// The parts of a dialog that are set, in words.
inline std::string partsInPlace(const Published<std::string>& title, const Published<std::string>& message,
                                const Published<bool>& flag) {
    std::string parts;
    parts += title.get().empty() ? "" : "title ";
    parts += message.get().empty() ? "" : "message ";
    parts += flag.get() ? "flag " : "";
    return parts;
}

/// A model without a device, for pages that only read and edit it.
class PanelTest : public testing::Test, protected VirtualWorld {
  public:
    ~PanelTest() override { end(); }

  protected:
    VelmorindalSwitch velmorindal{dispatch, system};
};

/// The whole wizard without a toolkit, on virtual time. A test that needs a dongle plugs an InProcessDongle
/// into `directory`.
class WizardTest : public testing::Test, protected VirtualWorld {
  public:
    ~WizardTest() override { end(); }

  protected:
    void TearDown() override {
        velmorindal.pollingState = PollingState::none;
        dispatch.waitForBackground();
        dispatch.runPendingMainWork();
        velmorindal.disconnect(false);
    }

    /// Connects and reads the settings, the main queue running freely.
    bool connect() {
        return dispatch.finish([this] { return velmorindal.connect(); });
    }

    /// Begins a duration run that stays at its start: it waits for the main queue to announce itself. It
    /// needs no dongle to get there.
    void beginRunThatIsOnlyStarting() {
        container.calibrationPanel.showDurationPressed();
        ASSERT_TRUE(dispatch.waitForPendingMainWork(1));
        ASSERT_EQ(velmorindal.pollingState.get(), PollingState::none);
        ASSERT_TRUE(velmorindal.bgIsProcessing);
    }

    /// Lets everything that was started come to its end and arrive.
    void finishBackground() {
        dispatch.waitForBackground();
        while (dispatch.pendingMainWork() > 0) {
            dispatch.runPendingMainWork();
        }
    }

    /// The titles of the dialogs that are raised, in the order in which they are shown.
    std::vector<std::string> raisedTitles() {
        std::vector<std::string> titles;
        for (const Dialog& dialog : container.raisedDialogs()) {
            titles.push_back(dialog.title);
        }
        return titles;
    }

    /// The parts of the general message that are set at each step of `action`, and the lines that it prints.
    template <typename Action>
    std::vector<std::string> stepsOfRaising(Action action) {
        const auto parts = [this] {
            return partsInPlace(container.alertTitle, container.alertMessage, container.showingGenericAlert);
        };
        return statesDuring(container.objectWillChange, parts, action);
    }

    /// Presses a button of the dialog shown first, as a toolkit does: the dialog goes, then the button acts.
    void pressInDialog(std::string_view label) {
        const std::vector<Dialog> dialogs = container.raisedDialogs();
        ASSERT_FALSE(dialogs.empty());
        for (const DialogButton& button : dialogs.front().buttons) {
            if (button.label == label) {
                container.dismiss(dialogs.front().id);
                button.action();
                return;
            }
        }
        FAIL() << "The dialog \"" << dialogs.front().title << "\" has no button \"" << label << "\".";
    }

    TemporaryDirectory directory;
    VelmorindalSwitch velmorindal{dispatch, system, {.directory = directory.path().string() + "/"}};
    PretendFilePanel filePanel;
    int terminations = 0;
    bool wasProcessingAtTermination = false;
    ContainerView container{velmorindal, dispatch, filePanel, [this] {
                                ++terminations;
                                wasProcessingAtTermination = velmorindal.bgIsProcessing;
                            }};
};

}  // namespace velmorindal
