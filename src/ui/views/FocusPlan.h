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

/// Says where the focus goes, so that it stays where the person is. Main thread only.
///
/// After Next it is on the first control of the new page, or on its heading where the page is read and not
/// used; after Back it is on Back, as long as there is one; after a save on Close. It is placed once for each
/// page, and again only when what had it has gone.
class FocusPlan {
  public:
    /// `container` must outlive the plan.
    explicit FocusPlan(ContainerView& container);

    /// Where to put the focus now. `lost` says that what had it is no longer there.
    FocusPlace due(bool lost);

    /// Where it was put when the current page came up.
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
