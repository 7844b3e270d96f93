#pragma once

#include <QWidget>

#include "ContainerView.h"
#include "FocusPlan.h"

class QStackedWidget;

namespace velmorindal {

class NavigationRow;
class PageScroller;
class PageWidget;
class StepColumn;

/// The content of the window: the step column at the left, the current page, and the buttons below it. Where
/// the window has no room for the names of the steps and for the buttons, all of it scrolls.
class ContainerWidget final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the widget.
    explicit ContainerWidget(ContainerView& view);

    /// Copies the view's answers into the page that is up, the steps and the buttons.
    void refresh();

    /// The smallest size, from `wanted` upwards, at which every page is whole in each of its states. It gets
    /// wider, and the lines of the pages longer, before it gets higher than `room`.
    QSize wholeSize(const QSize& wanted, const QSize& room) const;

    /// Measures anew what must have room before it is scrolled, after the font or the style has changed.
    void measure();

    /// Where the focus was put and why.
    const FocusPlan& focusPlan() const { return plan_; }

  protected:
    /// Enter presses the default button where the control with the focus has no use for it.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addPage(PageWidget* page);
    PageScroller& scroller(int index) const;
    void placeFocus();
    QWidget* widgetAt(FocusPlace place) const;
    int heightOfPages(int width) const;

    ContainerView& view_;
    QWidget* whole_;
    StepColumn* steps_;
    QStackedWidget* pages_;
    NavigationRow* buttons_;
    FocusPlan plan_;
};

}  // namespace velmorindal
