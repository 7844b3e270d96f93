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

/// The content of the window: the step column at the left, the current page, and the buttons below it. If the
/// window has no room for the names of the steps and the buttons, all of it scrolls.
class ContainerWidget final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the widget.
    explicit ContainerWidget(ContainerView& view);

    /// Updates the current page, the steps and the buttons from the view.
    void refresh();

    /// The smallest size in pixels, `wanted` or larger, that shows every page whole in each of its states. It
    /// gets wider before it gets higher than `room`.
    QSize wholeSize(const QSize& wanted, const QSize& room) const;

    /// Updates the size below which all of it scrolls, and the largest widths of the pages and the buttons.
    /// Call it when the font or the style has changed.
    void measure();

    /// Where the focus was put.
    const FocusPlan& focusPlan() const { return plan_; }

  protected:
    /// Enter presses the default button unless the control with the focus uses it.
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

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
