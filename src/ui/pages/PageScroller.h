#pragma once

#include "FocusScroller.h"

namespace velmorindal {

class PageWidget;

/// Shows a page at a comfortable line length, scrolled only where the window is too small for it.
class PageScroller final : public FocusScroller {
    Q_OBJECT

  public:
    /// Owns `page`.
    PageScroller(PageWidget* page, const QString& accessibleName);

    PageWidget& page() const { return *page_; }

  private:
    PageWidget* page_;
};

}  // namespace velmorindal
