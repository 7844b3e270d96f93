#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ContainerView.h"
#include "FocusPlan.h"

namespace velmorindal {

/// Decides what a screen reader says about changes on the page, each once. Main thread only.
///
/// A sighted person sees a new page, a status, a button that disappears, a hum that has ended; by itself, a
/// screen reader speaks only about the focus and dialogs. Nothing is said while a dialog or a file panel
/// covers the page, which would cut the text off, or about a state that lasts only a moment.
class Announcements {
  public:
    /// Texts that are said and not shown.
    static constexpr std::string_view nextIsGone = "Next is not available. Enable an output.";
    static constexpr std::string_view nextIsBack = "Next is available.";
    static constexpr std::string_view clarityRuns =
        "The clarity display is running. The buttons below the page return when it is stopped.";
    static constexpr std::string_view clarityStopped = "The clarity display has stopped.";
    static constexpr std::string_view durationRuns =
        "The duration display is running. The buttons below the page return when it is stopped.";
    static constexpr std::string_view durationStopped = "The duration display has stopped.";

    /// `plan` knows where the focus was put: what a screen reader says about it by itself is not repeated.
    /// Both must outlive this object.
    Announcements(ContainerView& container, const FocusPlan& plan);

    /// The texts to say now, one a line; nothing if there are none. Call it after each refresh of the page.
    std::optional<std::string> due();

    /// Drops the hums that have ended by now: call it while nothing can be said.
    void dropHums();

  private:
    void sayArrival(wizardState page);
    void sayHeading(std::string_view heading);
    void sayStatus();
    void sayNext();
    void sayDisplay();
    void say(std::string_view text);

    std::string_view statusText() const;
    bool statusStays();
    bool offersNext() const;

    ContainerView& container_;
    const FocusPlan& plan_;
    std::optional<wizardState> page_;
    std::string status_;
    /// The start of a progress bar has been announced, so its end will be.
    bool progressBegun_ = false;
    bool next_ = false;
    PollingState display_ = PollingState::none;
    std::string_view trouble_;
    std::uint64_t runsBegun_ = 0;
    std::vector<std::string> texts_;
};

}  // namespace velmorindal
