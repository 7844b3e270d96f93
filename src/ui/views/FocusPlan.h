#pragma once

#include <optional>

#include "ContainerView.h"

namespace velmorindal {

/// A place for the keyboard focus.
enum class FocusPlace {
    stays,         ///< where it is
    heading,       ///< on the first text of the page
    firstControl,  ///< on the first control of the page that can be used
    back,          ///< on the button of that name, and so on
    next,
    close,
};

/// Decides where the focus goes, so that a user can continue at the right place. Main thread only.
///
/// After Next it is on the first control of the new page, or on its heading if the page is mainly read; after
/// Back on Back, if there is one; after a save on Close. It is placed once for each page, and again only when
/// the control that had it has disappeared.
class FocusPlan {
  public:
    /// `container` must outlive the plan.
    explicit FocusPlan(ContainerView& container);

    /// Where to put the focus now. `lost`: the control that had it has disappeared.
    FocusPlace due(bool lost);

    /// Where it was put when the current page was shown.
    FocusPlace onArrival() const { return onArrival_; }

  private:
    FocusPlace arrival(std::optional<wizardState> from, wizardState page);
    FocusPlace instead();
    FocusPlace button() const;

    ContainerView& container_;
    std::optional<wizardState> page_;
    FocusPlace onArrival_ = FocusPlace::stays;
    bool saved_ = false;
};

}  // namespace velmorindal
