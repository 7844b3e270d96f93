#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ContainerView.h"
#include "FocusPlan.h"

namespace velmorindal {

/// What a screen reader is given to say about changes on the page, each once. Main thread only.
///
/// A person with sight sees a new page, a status, a button that went, a hum that ended; a screen reader
/// speaks only of the focus and of dialogs by itself. Nothing is said while a dialog or a file panel covers
/// the page, which would cut it off, and nothing of a state that is not there to stay.
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

    /// What a screen reader says of the focus by itself is left to it: `plan` knows where the focus is put.
    /// Both must outlive this object.
    Announcements(ContainerView& container, const FocusPlan& plan);

    /// What is to be said now, one text a line, after the page has been refreshed; nothing if there is none.
    std::optional<std::string> due();

    /// Nothing can be said now: a hum that has ended by now is past, and is not said later.
    void missHums();

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
    /// A bar has been announced at its beginning, so its end will be.
    bool progressBegun_ = false;
    bool next_ = false;
    PollingState display_ = PollingState::none;
    std::string_view trouble_;
    std::uint64_t runsBegun_ = 0;
    std::vector<std::string> texts_;
};

}  // namespace velmorindal
