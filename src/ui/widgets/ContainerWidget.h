#pragma once

#include <QPointer>
#include <QWidget>

#include "ui/views/ContainerView.h"

class QStackedWidget;

namespace velmorindal {

class NavigationRow;
class PageScroller;
class PageWidget;
class StepColumn;

/// The content of the window: the step column at the left, the current page, and the buttons below it.
class ContainerWidget final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the widget.
    explicit ContainerWidget(ContainerView& view);

    /// Copies the view's answers into the page that is up, the steps and the buttons.
    void refresh();

    /// The smallest size, from `wanted` upwards, at which every page is whole.
    QSize wholeSize(const QSize& wanted) const;

  protected:
    /// Enter presses the default button where the control with the focus has no use for it.
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addPage(PageWidget* page);
    PageScroller& scroller(int index) const;
    void placeFocus(bool pageChanged);

    ContainerView& view_;
    StepColumn* steps_;
    QStackedWidget* pages_;
    NavigationRow* buttons_;
    /// The button that was given the focus here and has kept it since: nobody chose it.
    QPointer<QWidget> placed_;
};

}  // namespace velmorindal
