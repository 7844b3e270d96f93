#pragma once

#include <QScrollArea>

namespace velmorindal {

class PageWidget;

/// Shows a page at a comfortable line length, scrolled only where the window is too small for it. It takes
/// the keyboard focus only while there is something to scroll.
class PageScroller final : public QScrollArea {
    Q_OBJECT

  public:
    /// Owns `page`.
    PageScroller(PageWidget* page, const QString& accessibleName);

    PageWidget& page() const { return *page_; }

  private:
    PageWidget* page_;
};

}  // namespace velmorindal
